#!/bin/sh
# Installs the Debian package in a bare Debian 12, uses it as an ordinary user would, and removes it again.
# Usage: check_deb.sh PACKAGE.deb [ROOT]; as root. ROOT: a folder that debootstrap has filled already, used as it
# is; without it one is made and removed again. Pictures of the window go to build/package.
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
  chmod 755 "$made"  # users inside have to get through it
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
# What looks at the window, and both shells.
inside apt-get install -y -qq --no-install-recommends xvfb xdotool bash-completion zsh >/dev/null
inside id mapper >/dev/null 2>&1 || inside useradd --create-home --shell /bin/bash mapper
cp "$package" "$root/tmp/ferrowen.deb"
chmod 644 "$root/tmp/ferrowen.deb"
inside apt-get install -y -qq --reinstall --no-install-recommends /tmp/ferrowen.deb >/dev/null
expect "ferrowen " "$(as_user 'ferrowen --version')" "runs without any of the recommended packages"
inside apt-get install -y -qq --no-install-recommends mkgmap mkgmap-splitter osmctools 7zip default-jre-headless >/dev/null
pass "installed with apt, the tools too"
files >"$root/tmp/installed"

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
expect "settings" "$(inside zsh -fc 'autoload -Uz compinit; compinit -u -D; functions _ferrowen >/dev/null; autoload +X _ferrowen
  functions _ferrowen')" "zsh finds the completion"
inside test -s /usr/share/man/man1/ferrowen.1.gz || fail "no man page"

# Return answers the box of the first start; Alt+R is "Create Map".
as_user 'mkdir -p frame; touch begin
  Xvfb :7 -screen 0 1280x800x24 -fbdir frame >/dev/null 2>&1 & screen=$!
  sleep 2; export DISPLAY=:7
  ferrowen6 /usr/share/ferrowen/faroe-islands.osm.pbf >window.log 2>&1 & program=$!
  for second in $(seq 20); do sleep 1; window=$(xdotool search --onlyvisible --name Ferrowen | head -n 1) && break; done
  sleep 4; cp frame/Xvfb_screen0 opened; xdotool key Return; sleep 1
  xdotool windowfocus "$window"; sleep 1; xdotool key --clearmodifiers alt+r
  for second in $(seq 60); do
    sleep 1; [ -z "$(find .local/share/ferrowen/gmapsupp -name "*.img" -newer begin -size +10k)" ] || { touch built; break; }
  done
  sleep 3; cp frame/Xvfb_screen0 finished; kill $program; wait $program; echo "ended with $?" >>window.log; kill $screen' \
  >/dev/null 2>&1 || true
for picture in opened finished; do
  python3 -B "$here/tests/support/screen_picture.py" "$root/home/mapper/$picture" "$here/build/package/$picture.png"
done
[ -e "$root/home/mapper/built" ] || fail "no map from the window: $(cat "$root/home/mapper/window.log")"
pass "the window opens under Xvfb and builds the sample map"
expect "ended with 0" "$(cat "$root/home/mapper/window.log")" "the window ends when it is asked to"

inside dpkg -L ferrowen | sort >"$root/tmp/own"
inside apt-get purge -y -qq ferrowen >/dev/null
files >"$root/tmp/after"
left=$(comm -13 "$root/tmp/installed" "$root/tmp/after")
[ -z "$left" ] || fail "made while it was there, and left: $left"
while read -r name; do
  [ -d "$root$name" ] || [ ! -e "$root$name" ] || fail "left behind: $name"
done <"$root/tmp/own"
left=$(grep -i ferrowen "$root/tmp/after" || true)
[ -z "$left" ] || fail "left behind: $left"
inside test -f /home/mapper/.local/share/ferrowen/ferrow6.dat || fail "the user's own folder is gone"
pass "removed; nothing is left but the user's own folder"
echo "$passed passed, 0 failed"
