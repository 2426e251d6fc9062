#!/bin/bash
# Builds all scripts of a folder side by side on one machine, as many as its memory allows. Each script has a
# program folder of its own; styles and heights are shared, and only read.
set -euo pipefail
FERROWEN=${FERROWEN:-ferrowen}
MAPS=${MAPS:-$HOME/maps}          # *.auto
STYLES=${STYLES:-$HOME/styles}    # one folder each
HEIGHTS=${HEIGHTS:-$HOME/hgt}     # *.hgt
WORK=${WORK:-$HOME/map-builds}    # a program folder for each script
MEMORY=${MEMORY:-2000}            # MB for one build: three quarters are Java's heap

build_one() {
  local home
  home=$WORK/$(basename "$1" .auto)
  mkdir -p "$home"
  "$FERROWEN" --quiet --home "$home" settings set "styles-folder=$STYLES" "hgt-folder-1=$HEIGHTS" \
    "java-options=-Xmx$((MEMORY * 3 / 4))m"
  "$FERROWEN" --quiet --home "$home" run "$1"
}
export -f build_one
export FERROWEN STYLES HEIGHTS WORK MEMORY

total=$(awk '/^MemTotal/ {print int($2 / 1024)}' /proc/meminfo)
jobs=$((total / MEMORY))
[ "$jobs" -ge 1 ] || jobs=1
find "$MAPS" -maxdepth 1 -name '*.auto' -print0 | sort -z | parallel --null --jobs "$jobs" --halt never build_one
