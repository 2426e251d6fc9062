#!/bin/sh
# Runs the programs with the real tools, contour lines beside gdal_contour. Usage: run_all.sh BUILD_FOLDER [TEST...]
set -eu
here=$(cd "$(dirname "$0")" && pwd)
FERROWEN_BUILD=$(cd "$1" && pwd)
export FERROWEN_BUILD
shift
[ $# -gt 0 ] || set -- test_real_tools test_contours
cd "$here"
exec python3 -m unittest "$@"
