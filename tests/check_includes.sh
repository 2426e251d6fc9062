#!/bin/sh
# The direction of every include: a room sees the rooms below it, never beside or above, and never by a path
# that leads out of its folder. The build forbids most of it; this finds what a relative path would hide.
# Usage: check_includes.sh SOURCE_FOLDER
set -eu
cd "$1/src"
find . -name '*.cpp' -o -name '*.hpp' | sort | tr '\n' '\0' | xargs -0 awk '
# Room folder, then the rooms whose headers it may include (its own is always allowed).
BEGIN {
  below["platform"] = ""
  below["base"] = "platform"
  below["runner"] = "base platform"
  below["app"] = "runner base platform"
  below["styletools"] = below["mp"] = below["pipeline/tiles"] = "app runner base platform"
  below["contours"] = "base platform"
  below["elevation"] = "contours pipeline/tiles app runner base platform"
  below["pipeline"] = "elevation pipeline/tiles app runner base platform"
  below["automation"] = "pipeline elevation pipeline/tiles app runner base platform"
  below["ui"] = below["cli"] = "automation styletools mp pipeline elevation pipeline/tiles app runner base platform"
  libraries["cli"] = "^Q"
  libraries["ui"] = "^(CLI|nlohmann)"
}
function room_of(path) {
  if (path ~ /^pipeline\/tiles\//) return "pipeline/tiles"
  return path ~ /\// ? substr(path, 1, index(path, "/") - 1) : ""
}
function fault(text) {
  print file ": " text
  failed = 1
}
FNR == 1 {
  file = substr(FILENAME, 3)
  room = room_of(file)
  known = room in below
  if (!known) fault("stands in a folder that is no room")
  forbidden = room in libraries ? libraries[room] : "^(Q|CLI|nlohmann)"
}
known && /^ *# *include *"/ {
  split($0, parts, "\"")
  header = parts[2]
  ++count
  target = room_of(header)
  if (header ~ /\.\./) fault("leaves its folder: " header)
  else if (target != room && index(" " below[room] " ", " " target " ") == 0) fault(room " may not include " header)
}
known && /^ *# *include *</ {
  split($0, parts, "<")
  if (parts[2] ~ forbidden) fault(room " may not use that library: " $0)
}
END {
  if (count <= 100) fault("only " count + 0 " includes were found: is the folder right?")
  if (!failed) print count " includes, all downwards"
  exit failed
}'
