#!/bin/sh
# Makes what users of Windows get, on Debian: dist/ferrowen-setup.exe and dist/ferrowen-VERSION-windows-portable.zip.
set -eu
export LC_ALL=C.UTF-8
root=$(cd "$(dirname "$0")/../.." && pwd)
cd "$root"
. cmake/setup.sh
# shellcheck disable=SC2086
need_packages $windows_packages

build=$root/build/windows
tree=$build/setup/tree
qt=$(sh packaging/windows/build_qt.sh)

say() { echo "== $*"; }

say "Building the programs"
cmake --preset windows -DFERROWEN_WINDOWS_QT="$qt" -DCMAKE_PREFIX_PATH="$qt" -DQT_HOST_PATH=/usr \
  -DQT_HOST_PATH_CMAKE_DIR="/usr/lib/$(dpkg-architecture -q DEB_HOST_MULTIARCH)/cmake" >/dev/null
cmake --build --preset windows --target ferrowen ferrowen6 ferrowen-contours -- --quiet
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")
python3 packaging/changelog.py check "$version"

# The assets are made with this machine's own tools.
say "Making the assets"
[ -f build/release/build.ninja ] || cmake --preset release -DFERROWEN_TESTS=OFF >/dev/null
cmake --build --preset release --target ferrowen-assets ferrowen-guide -- --quiet

say "Putting the files together"
rm -rf "$build/setup"
mkdir -p "$tree/plugins/platforms" "$tree/plugins/styles" "$tree/translations" "$tree/share" "$tree/licences"
cp "$build/bin/ferrowen.exe" "$build/bin/ferrowen6.exe" "$build/bin/ferrowen-contours.exe" "$tree/"
cp "$qt/bin/Qt6Core.dll" "$qt/bin/Qt6Gui.dll" "$qt/bin/Qt6Widgets.dll" "$tree/"
# Folders of their own: "styles" is the user's.
cp "$qt/plugins/platforms/qwindows.dll" "$tree/plugins/platforms/"
cp "$qt/plugins/styles/"*.dll "$tree/plugins/styles/"
for language in de fr; do cp "/usr/share/qt6/translations/qtbase_$language.qm" "$tree/translations/"; done
printf '[Paths]\r\nPrefix = .\r\nPlugins = plugins\r\nTranslations = translations\r\n' >"$tree/qt.conf"
for library in libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll; do
  cp "$(x86_64-w64-mingw32-g++-posix -print-file-name=$library)" "$tree/"
done
x86_64-w64-mingw32-strip "$tree"/*.exe "$tree"/lib*.dll
cp -R build/release/share/ferrowen "$tree/share/"

crlf() { sed 's/\r*$/\r/'; }
copyright_of() { crlf <"/usr/share/doc/$1/copyright" >"$tree/licences/$2"; }
crlf <LICENSE >"$tree/licences/Ferrowen.txt"
copyright_of g++-mingw-w64-x86-64-posix "GCC libraries.txt"
copyright_of mingw-w64-x86-64-dev "mingw-w64.txt"
copyright_of libcli11-dev "CLI11.txt"
copyright_of qt6-translations-l10n "Qt translations.txt"
copyright_of nlohmann-json3-dev "nlohmann-json.txt"
for text in LGPL-3.0-only GPL-3.0-only; do crlf <"$qt/licences/$text.txt" >"$tree/licences/Qt $text.txt"; done
crlf <"$qt/licences/copyright" >"$tree/licences/Qt parts.txt"
# The copyright texts point to these, which lie in a folder of the system where they come from.
mkdir "$tree/licences/common-licenses"
for text in Apache-2.0 GFDL-1.2 GFDL-1.3 GPL-1 GPL-2 GPL-3 LGPL-2 LGPL-2.1 LGPL-3; do
  crlf <"/usr/share/common-licenses/$text" >"$tree/licences/common-licenses/$text.txt"
done
crlf >"$tree/licences/Common licences.txt" <<END
What the other texts call "/usr/share/common-licenses/NAME" is the file NAME.txt of the folder common-licenses here
("GPL" is GPL-3, "LGPL" is LGPL-3, "GFDL" is GFDL-1.3).
END
crlf >"$tree/licences/Coastline and land.txt" <<END
The coastline, the list of land cells and the coast of the sample map (share\ferrowen) are derived from GSHHG 2.3.7,
copyright 2014 The GMT Team (Paul Wessel, Walter H. F. Smith). They may be used under the GNU Lesser General Public
License, version 3 or any later version ("Qt LGPL-3.0-only.txt", which adds to "Qt GPL-3.0-only.txt").
What was done to them is part of Ferrowen's own source, in the folder assets.
END
crlf >"$tree/licences/Qt.txt" <<END
Qt6Core.dll, Qt6Gui.dll, Qt6Widgets.dll and the files in plugins and translations belong to Qt, used under the GNU
Lesser General Public License, version 3 ("Qt LGPL-3.0-only.txt", which adds to "Qt GPL-3.0-only.txt").

They are built without changes from Debian's source package qt6-base, version $(cat "$qt/licences/version"):
apt-get source qt6-base=$(cat "$qt/licences/version")
How they are built stands in packaging/windows/build_qt.sh of Ferrowen's own source. You may put libraries that
you have built yourself in their place. "Qt parts.txt" names the authors and licences of the parts of Qt.
END

# Files first, then the folders, inner ones before outer ones; as UTF-16, which the setup reads.
list=$build/setup/installed-files.txt
(
  cd "$tree"
  { find . -type f | sort; echo ./uninstall.exe; echo ./installed-files.txt; find . -mindepth 1 -depth -type d | sed 's|$|/|'; } |
    sed 's|^\./||; s|/|\\|g; s|$|\r|' | iconv -f UTF-8 -t UTF-16LE
) >"$list"
echo "$version" >"$build/setup/version"

say "Packing"
sh packaging/windows/make_setup.sh "$version" dist/ferrowen-setup.exe
zip_file=$root/dist/ferrowen-$version-windows-portable.zip
rm -f "$zip_file"
cp -al "$tree" "$build/setup/Ferrowen"
(cd "$build/setup" && zip -q -X -9 -r "$zip_file" Ferrowen)
rm -r "$build/setup/Ferrowen"
du -sh "$tree" | sed 's/\t.*/ installed/'
ls -l dist/ferrowen-setup.exe "$zip_file" | awk '{ print $5, $NF }'
