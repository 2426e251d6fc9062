#!/bin/sh
# Runs ferrowen with the real splitter and mkgmap. Usage: run_all.sh BUILD_FOLDER [TEST...]
set -eu
here=$(cd "$(dirname "$0")" && pwd)
FERROWEN_BUILD=$(cd "$1" && pwd)
export FERROWEN_BUILD
shift
cd "$here"
exec python3 -m unittest "${@:-test_real_tools}"
