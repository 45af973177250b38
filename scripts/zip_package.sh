#!/usr/bin/env bash
# zip_package.sh QLX BINARIES: zips the Windows build in the folder BINARIES with all that belongs to it, and prints the
# zip's name. QLX is a tool that runs here and makes the sample office; record files are the same in both worlds.
# Equal sources make equal zips.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
qlx=$1 binaries=$2
version=$(sed -nE 's/^project\(qlx99 VERSION ([0-9.]+) .*/\1/p' CMakeLists.txt)
zip=build/qlx99-$version-win32.zip
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# windows_text FILE NAME: as Windows' editors take it, the Basic editor above all: German code page, Windows' line ends.
windows_text() { sed 's/$/\r/' "$1" | iconv -f UTF-8 -t WINDOWS-1252 >"$folder/$2"; }

mkdir "$folder"/{macros,c}
windows_text install/INSTALL.txt INSTALL.txt
windows_text install/qlx99.reg qlx99.reg
windows_text macros/qlx99.bas macros/qlx99.bas
windows_text macros/letter.bas macros/letter.bas
windows_text macros/HANDBUCH.md macros/HANDBUCH.txt
windows_text qlx99/qlx99.h c/qlx99.h
cp docs/exports.md "$folder/macros"
cp "$binaries"/qlx99.lib "$folder/c"
cp "$binaries"/{qlx99.dll,atbtrv32.dll,qlx99server.exe,qlx.exe} "$folder"
"$qlx" office create "$folder/office" >/dev/null

# With the date of the sources, and without owners, time zone, rights and order of this machine.
date=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct)}
find "$folder" -type d -exec chmod 755 {} + -o -exec chmod 644 {} +
find "$folder" -exec touch -d "@$date" {} +
rm -f "$zip"
root=$PWD
(cd "$folder" && find . ! -name . -printf '%P\n' | LC_ALL=C sort | TZ=UTC zip -X -q "$root/$zip" -@)
echo "$zip"
