#!/bin/sh
# The direction of every include: a room sees the rooms below it, never beside or above, and never by a path
# that leads out of its folder. The build forbids most of it; this finds what a relative path would hide.
# Usage: check_includes.sh SOURCE_FOLDER
set -eu
root=$1
failed=0

# room folder, then the rooms whose headers it may include (its own is always allowed)
rules='
platform:
base: platform
runner: base platform
app: runner base platform
styletools: app runner base platform
mp: app runner base platform
pipeline/tiles: app runner base platform
contours: base platform
elevation: contours pipeline/tiles app runner base platform
pipeline: elevation pipeline/tiles app runner base platform
automation: pipeline elevation pipeline/tiles app runner base platform
ui: automation styletools mp pipeline elevation pipeline/tiles app runner base platform
cli: automation styletools mp pipeline elevation pipeline/tiles app runner base platform
'

allowed_for() { printf '%s\n' "$rules" | sed -n "s|^$1:||p"; }

room_of() {
  case $1 in
    pipeline/tiles/*) echo pipeline/tiles ;;
    */*) echo "${1%%/*}" ;;
    *) echo "" ;;
  esac
}

rooms=$(printf '%s\n' "$rules" | sed -n 's|^\(.*\):.*|\1|p')
count=0
for file in $(cd "$root/src" && find . -name '*.cpp' -o -name '*.hpp' | sed 's|^\./||'); do
  room=$(room_of "$file")
  if ! printf '%s\n' "$rooms" | grep -qx "$room"; then
    echo "$file: stands in a folder that is no room"
    failed=1
    continue
  fi
  for header in $(sed -n 's|^ *# *include *"\([^"]*\)".*|\1|p' "$root/src/$file"); do
    count=$((count + 1))
    case $header in
      *..*) echo "$file: leaves its folder: $header"; failed=1; continue ;;
    esac
    target=$(room_of "$header")
    [ "$target" = "$room" ] && continue
    if ! printf ' %s ' "$(allowed_for "$room")" | grep -q " $target "; then
      echo "$file: $room may not include $header"
      failed=1
    fi
  done
  case $room in
    cli) forbidden='Q' ;;
    ui) forbidden='CLI|nlohmann' ;;
    *) forbidden='Q|CLI|nlohmann' ;;
  esac
  if grep -nE "#include <($forbidden)" "$root/src/$file"; then
    echo "$file: $room may not use that library"
    failed=1
  fi
done
[ "$count" -gt 100 ] || { echo "only $count includes were found: is the folder right?"; exit 1; }
[ "$failed" = 0 ] && echo "$count includes, all downwards"
exit "$failed"
