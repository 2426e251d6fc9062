#!/bin/sh
# Builds the Debian package into dist/ and lets lintian judge it. Usage: make_deb.sh (from ./package deb)
set -eu
cd "$(dirname "$0")/../.."
. cmake/setup.sh

need_packages $build_packages dpkg-dev lintian
# Debian's hardening; the debug information of -g would be stripped again.
flags=$(DEB_BUILD_MAINT_OPTIONS=hardening=+all DEB_CXXFLAGS_MAINT_STRIP=-g dpkg-buildflags --get CXXFLAGS)
checks=$(DEB_BUILD_MAINT_OPTIONS=hardening=+all dpkg-buildflags --get CPPFLAGS)
linking=$(DEB_BUILD_MAINT_OPTIONS=hardening=+all dpkg-buildflags --get LDFLAGS)
cmake --preset package -DCMAKE_CXX_FLAGS="$flags $checks" -DCMAKE_EXE_LINKER_FLAGS="$linking" >/dev/null
cmake --build --preset package -- --quiet

mkdir -p dist
rm -f dist/ferrowen_*.deb
# Folders and files get the modes that Debian asks for, whatever the builder's own mask is.
umask 022
(cd build/package && cpack -G DEB >cpack.log) || { cat build/package/cpack.log >&2; exit 1; }
package=$(ls dist/ferrowen_*.deb)
lintian --profile debian --fail-on error,warning "$package"
echo "$package: $(du -k "$package" | cut -f1) KiB"
