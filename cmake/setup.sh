# Sourced by ./run and ./check: installs the Debian packages that are missing.
# Usage after sourcing: need_packages NAME...

need_packages() {
  missing=""
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing="$missing $package"
  done
  [ -z "$missing" ] && return 0
  echo "Missing packages:$missing"
  if ! command -v apt-get >/dev/null 2>&1; then
    echo "This machine has no apt-get. Install the packages above (or what they stand for) and start again." >&2
    return 1
  fi
  as_root=""
  if [ "$(id -u)" != 0 ]; then
    command -v sudo >/dev/null 2>&1 || { echo "Run as root, or install sudo, to install them." >&2; return 1; }
    as_root=sudo
  fi
  # An index of packages that was fetched long ago may name files that are gone.
  $as_root apt-get update -qq || echo "The package lists could not be renewed; going on with what is there." >&2
  # shellcheck disable=SC2086
  $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing >/dev/null || {
    echo "apt-get could not install:$missing" >&2
    return 1
  }
  echo "Installed:$missing"
}

build_packages="g++ cmake ninja-build libcli11-dev nlohmann-json3-dev qt6-base-dev
  python3 osmctools
  default-jre-headless mkgmap mkgmap-splitter"
check_packages="$build_packages git doctest-dev clang clang-tidy clang-format libclang-rt-14-dev
  g++-mingw-w64-x86-64-posix wine wine64 p7zip-full nsis gdal-bin parallel procps qt6-translations-l10n"
windows_qt_packages="g++ cmake ninja-build dpkg-dev debian-archive-keyring g++-mingw-w64-x86-64-posix
  qt6-base-dev qt6-base-dev-tools qt6-base-private-dev"
windows_packages="$build_packages $windows_qt_packages nsis zip librsvg2-bin icoutils qt6-translations-l10n"
