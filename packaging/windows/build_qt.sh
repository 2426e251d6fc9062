#!/bin/sh
# Builds Debian's own Qt base for Windows with mingw-w64, once, and prints the folder it is kept in.
# The folder gets its final name only when everything is in it, so a build that was stopped is never used.
set -eu
root=$(cd "$(dirname "$0")/../.." && pwd)
. "$root/cmake/setup.sh"

# shellcheck disable=SC2086
need_packages $windows_qt_packages >&2

# moc, rcc and uic come from the machine's own Qt, which must be of the same version.
debian_version=$(dpkg-query -W -f='${source:Version}' qt6-base-dev)
version=${debian_version%%[+-]*}
cache=${FERROWEN_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/ferrowen}
kept=$cache/qt6-windows-$debian_version
if [ -d "$kept" ]; then
  echo "Qt $version for Windows is there: $kept" >&2
  echo "$kept"
  exit 0
fi

work=$(mkdir -p "$cache" && mktemp -d "$kept.XXXXXX")
trap 'rm -rf "$work"' EXIT
trap 'exit 1' HUP INT TERM
say() { echo "Qt $version for Windows: $*" >&2; }

# Every path of apt is set to the work folder: the machine's own package sources stay as they are.
own_apt() {
  apt-get -qq -o Dir::Etc::SourceList="$work/apt/sources.list" -o Dir::Etc::SourceParts=/dev/null \
    -o Dir::State::Lists="$work/apt/lists" -o Dir::Cache="$work/apt/cache" -o APT::Sandbox::User= "$@" >&2
}

say "fetching the source package"
mkdir -p "$work/apt/lists/partial" "$work/apt/cache/archives/partial"
apt-get indextargets --format '$(SITE) $(CODENAME) $(COMPONENT) $(ORIGIN)' 'Created-By: Packages' | sort -u |
  sed -n 's|^\(.*\) Debian$|deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] \1|p' >"$work/apt/sources.list"
own_apt update
(cd "$work" && own_apt --only-source source "qt6-base=$debian_version")

# Off: what no window of this program uses, and what needs headers that the source package leaves out.
features_off="tabletevent sql dbus opengl printsupport xml concurrent network vulkan icu glib jpeg direct2d direct2d1_1
  system_zlib system_png system_freetype system_harfbuzz system_pcre2 system_doubleconversion zstd brotli"
set --
for feature in $features_off; do set -- "$@" "-DFEATURE_$feature=OFF"; done
say "building, a quarter of an hour or more; what the build says is in $work/log"
if ! {
  cmake -S "$work/qt6-base-$version"* -B "$work/build" -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-w64.cmake" -DCMAKE_INSTALL_PREFIX="$work/installed" \
    -DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR="/usr/lib/$(dpkg-architecture -q DEB_HOST_MULTIARCH)/cmake" \
    -DBUILD_SHARED_LIBS=ON -DQT_BUILD_TESTS=OFF -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_BENCHMARKS=OFF \
    -DINPUT_opengl=no "$@" &&
    cmake --build "$work/build" && cmake --install "$work/build" --strip
} >"$work/log" 2>&1; then
  tail -n 40 "$work/log" >&2
  say "the build failed"
  exit 1
fi

# The licence travels with the libraries that it belongs to.
mkdir -p "$work/installed/licences"
cp "$work/qt6-base-$version"*/LICENSES/LGPL-3.0-only.txt "$work/qt6-base-$version"*/LICENSES/GPL-3.0-only.txt \
  "$work/qt6-base-$version"*/debian/copyright "$work/installed/licences/"
echo "$debian_version" >"$work/installed/licences/version"
mv -T "$work/installed" "$kept"
say "done"
echo "$kept"
