#!/bin/sh
# Packs the files that make_packages.sh put together into a setup program: make_setup.sh VERSION SETUP.exe
set -eu
root=$(cd "$(dirname "$0")/../.." && pwd)
files=$root/build/windows/setup
mkdir -p "$(dirname "$2")"
folder=$(cd "$(dirname "$2")" && pwd)
size=$(du -sk --apparent-size "$files/tree" | cut -f1)
said=$(makensis -V2 -WX -INPUTCHARSET UTF8 -X"Target amd64-unicode" -DVERSION="$1" -DTREE="$files/tree" \
  -DLIST="$files/installed-files.txt" -DSIZE_KB="$size" -DSOURCE="$root" \
  -DOUTPUT="$folder/$(basename "$2")" "$root/packaging/windows/ferrowen.nsi" 2>&1) || {
  echo "$said" >&2
  exit 1
}
