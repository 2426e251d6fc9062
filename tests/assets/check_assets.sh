#!/bin/sh
# Tests the assets: check_assets.sh DIR, where DIR is what make_assets.sh made.
# One line per check; the exit status is 1 when any fails. Needs python3, osmconvert, java, unzip, mkgmap.jar.
set -u

here=$(cd "$(dirname "$0")" && pwd)
assets=$here/../../assets
jar=${MKGMAP_JAR:-/usr/share/mkgmap/mkgmap.jar}
export LC_ALL=C.UTF-8
[ $# -eq 1 ] && [ -d "$1" ] || { echo "usage: check_assets.sh DIR" >&2; exit 2; }
made=$(cd "$1" && pwd)
work=$(mktemp -d) || exit 2
trap 'rm -rf "$work"' EXIT INT TERM
failures=0

# check TEXT COMMAND...: the command's output stands behind the text
check() {
    text=$1
    shift
    said=$("$@" 2>&1)
    status=$?
    said=$(printf '%s' "$said" | tr '\n' ' ')
    if [ "$status" -eq 0 ]; then
        echo "ok      $text${said:+: $said}"
    else
        echo "FAILED  $text: $said"
        failures=$((failures + 1))
    fi
}

read_sample() {
    osmconvert "$made/faroe-islands.osm.pbf" -o="$work/sample.osm" && [ -s "$work/sample.osm" ]
}

typ_compiles() {
    said=$(java -cp "$jar" uk.me.parabola.mkgmap.main.TypCompiler "$assets/mapnik65001.txt" "$work/out.typ" 2>&1)
    [ -z "$said" ] || { echo "$said"; return 1; }
    [ -s "$work/out.typ" ] || { echo "no TYP file"; return 1; }
    # all but the date in the header
    cmp -i 21 "$work/out.typ" "$made/mapnik65001.typ"
}

typ_covers_style() {
    unzip -qo "$jar" 'styles/default/*' -d "$work" &&
        python3 -B "$here/check_assets.py" typ "$assets/mapnik65001.txt" "$work/styles/default"
}

line_ends() {
    for name in mapnik65001.txt hgt_land mkopts splopts newscrpt commands logging.properties; do
        python3 -B "$here/check_assets.py" crlf "$assets/$name" || return 1
    done
}

check "sample can be read" read_sample
for part in places roads land shape; do
    check "sample, $part" python3 -B "$here/check_assets.py" "$part" "$work/sample.osm"
done
check "TYP text compiles without a word" typ_compiles
check "TYP text covers the default style" typ_covers_style
check "hgt_land" python3 -B "$here/check_assets.py" hgt_land "$assets/hgt_land"
check "option sets" python3 -B "$here/check_assets.py" options "$assets/mkopts" "$assets/splopts"
check "line ends" line_ends

[ "$failures" -eq 0 ] || { echo "$failures failed"; exit 1; }
