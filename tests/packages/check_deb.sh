#!/bin/sh
# Installs the Debian package in a bare Debian 12, uses it as an ordinary user would, and removes it again.
# Usage: check_deb.sh PACKAGE.deb [ROOT]; as root. ROOT: a folder that debootstrap has filled already, used as it
# is; without it one is made and removed again. Pictures of the window go to build/package/screenshots.
set -eu
[ $# -ge 1 ] || { sed -n '3,4s/^# //p' "$0" >&2; exit 2; }
[ "$(id -u)" = 0 ] || { echo "debootstrap needs root" >&2; exit 2; }
here=$(cd "$(dirname "$0")/../.." && pwd)
package=$(realpath "$1")
root=${2:-}
made=""
passed=0

finish() {
  for part in proc dev/pts dev; do
    mountpoint -q "$root/$part" && umount "$root/$part"
  done
  [ -z "$made" ] || rm -rf --one-file-system "$made"
}
trap finish EXIT
trap 'exit 1' INT TERM

if [ -z "$root" ]; then
  made=$(mktemp -d)
  root=$made
  mirror=$(apt-get indextargets --format '$(SITE)' 'Suite: bookworm' 2>/dev/null | head -n 1)
  debootstrap --variant=minbase bookworm "$root" ${mirror:+"$mirror"} >"$here/build/debootstrap.log"
fi
mount -t proc proc "$root/proc"
mount --bind /dev "$root/dev"
mount --bind /dev/pts "$root/dev/pts"
cp /etc/resolv.conf /etc/hosts "$root/etc/"

inside() { chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"; }
as_user() { inside su - mapper -c "export LC_ALL=C.UTF-8; $1"; }
fail() { echo "FAILED: $*" >&2; exit 1; }
pass() { passed=$((passed + 1)); echo "ok: $*"; }
expect() { printf '%s\n' "$2" | grep -q -- "$1" || fail "no '$1' in: $2"; pass "$3"; }
files() { inside find / -xdev \( -path /proc -o -path /dev -o -path /var/cache -o -path /var/lib/apt -o -path /tmp \
  -o -path /var/log -o -path /home/mapper \) -prune -o -print | sort; }

inside apt-get update -qq
# The package's own tools and what looks at the window come first, so that the list tells its own files alone.
inside apt-get install -y -qq --no-install-recommends xvfb xdotool x11-apps bash-completion >/dev/null
inside id mapper >/dev/null 2>&1 || inside useradd --create-home --shell /bin/bash mapper
cp "$package" "$root/tmp/ferrowen.deb"
chmod 644 "$root/tmp/ferrowen.deb"
inside apt-get install -y -qq --reinstall --no-install-recommends /tmp/ferrowen.deb >/dev/null
expect "ferrowen " "$(as_user 'ferrowen --version')" "runs without any of the recommended packages"
inside apt-get install -y -qq --no-install-recommends mkgmap mkgmap-splitter osmctools 7zip default-jre-headless >/dev/null
pass "installed with apt, the tools too"

table=$(as_user "ferrowen build /usr/share/ferrowen/faroe-islands.osm.pbf --split --name 'Färöer & Co' \
  --fid 6324 --gmapsupp --yes 2>&1") || fail "build: $table"
[ -n "$(inside find /home/mapper/.local/share/ferrowen/gmapsupp -name '*.img' -size +10k)" ] || fail "no map: $table"
pass "the sample map is built by an ordinary user"
[ "$(inside stat -c %U /home/mapper/.local/share/ferrowen)" = mapper ] || fail "the program folder is not the user's"
pass "the program folder is the user's own"
expect "deutsch.m5l" "$(as_user 'ferrowen language list')" "languages come along"
as_user "ferrowen-contours --help" | grep -qi "contour" || fail "ferrowen-contours"
pass "the contour maker runs"
expect "settings" "$(inside bash -c '. /usr/share/bash-completion/bash_completion; . /usr/share/bash-completion/completions/ferrowen
  COMP_WORDS=(ferrowen se) COMP_CWORD=1 COMP_LINE="ferrowen se" COMP_POINT=11; _ferrowen; echo "${COMPREPLY[@]}"')" \
  "bash completes a command"
inside test -s /usr/share/man/man1/ferrowen.1.gz || fail "no man page"

as_user 'Xvfb :7 -screen 0 1280x800x24 >/dev/null 2>&1 & sleep 2; export DISPLAY=:7
  ferrowen6 /usr/share/ferrowen/faroe-islands.osm.pbf >window.log 2>&1 & program=$!
  for second in 1 2 3 4 5 6 7 8 9 10; do
    sleep 1; xdotool search --onlyvisible --name Ferrowen >window.id 2>/dev/null && break
  done
  sleep 3; xwd -silent -root >window.xwd; kill $program; wait $program; kill %1' || true
[ -s "$root/home/mapper/window.id" ] || fail "no window: $(cat "$root/home/mapper/window.log")"
mkdir -p "$here/build/package/screenshots"
cp "$root/home/mapper/window.xwd" "$here/build/package/screenshots/"
pass "the window opens under Xvfb"

files >"$root/tmp/before"
inside apt-get purge -y -qq ferrowen >/dev/null
files >"$root/tmp/after"
left=$(grep -i ferrowen "$root/tmp/after" || true)
[ -z "$left" ] || fail "left behind: $left"
inside test -f /home/mapper/.local/share/ferrowen/ferrow6.dat || fail "the user's own folder is gone"
pass "removed; nothing is left but the user's own folder"
echo "$passed passed, 0 failed"
