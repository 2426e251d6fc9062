#!/bin/sh
# Makes the assets that are built rather than kept: the sample map and the compiled default TYP file.
#
#     make_assets.sh OUTDIR
#
# Needs python3, osmconvert (osmctools), java and mkgmap.jar (environment variable MKGMAP_JAR, else the path of
# the Debian package). The same sources give the same bytes.
set -eu

fail() {
    echo "make_assets: $*" >&2
    exit 1
}

[ $# -eq 1 ] || fail "usage: make_assets.sh OUTDIR"
here=$(cd "$(dirname "$0")" && pwd)
mkdir -p "$1" || fail "cannot make $1"
out=$(cd "$1" && pwd)
jar=${MKGMAP_JAR:-/usr/share/mkgmap/mkgmap.jar}
export LC_ALL=C.UTF-8

for tool in python3 osmconvert java; do
    command -v "$tool" >/dev/null 2>&1 || fail "$tool is not installed"
done
[ -s "$jar" ] || fail "mkgmap.jar not found at $jar; set MKGMAP_JAR"

work=$(mktemp -d "$out/making.XXXXXX") || fail "cannot write to $out"
trap 'rm -rf "$work"' EXIT INT TERM

# osmconvert leaves an empty file or none when it fails; its name ending decides the format.
python3 "$here/sample/make_sample.py" "$work/sample.osm"
osmconvert "$work/sample.osm" -o="$work/faroe-islands.osm.pbf" || fail "osmconvert failed"
[ -s "$work/faroe-islands.osm.pbf" ] || fail "osmconvert wrote no sample map"

# TypCompiler ends with 0 on errors too: its words and its output tell.
said=$(java -cp "$jar" uk.me.parabola.mkgmap.main.TypCompiler "$here/mapnik65001.txt" "$work/mapnik65001.typ" 2>&1) ||
    fail "TypCompiler failed: $said"
[ -z "$said" ] || fail "TypCompiler: $said"
[ -s "$work/mapnik65001.typ" ] || fail "TypCompiler wrote no TYP file"

# Bytes 0x0E to 0x14 are the time of making: set to 1 January 2024 for the same bytes every time.
printf '\350\007\001\001\000\000\000' | dd of="$work/mapnik65001.typ" bs=1 seek=14 conv=notrunc status=none ||
    fail "cannot set the date of the TYP file"

chmod 644 "$work/faroe-islands.osm.pbf" "$work/mapnik65001.typ"
mv -f "$work/faroe-islands.osm.pbf" "$work/mapnik65001.typ" "$out/"
