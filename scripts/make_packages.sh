#!/usr/bin/env bash
# make_packages.sh QLX BINARIES: packs the Windows build in the folder BINARIES with all that belongs to it into
# build/qlx99-VERSION-win32.zip and .msi, with their checksums beside them, and prints the names of the two. QLX is a tool
# that runs here and makes the sample office; record files are the same in both worlds. Equal sources make equal
# packages, but for the sample office: every record file has a number of its own.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
qlx=$1 binaries=$2
version=$(sed -nE 's/^project\(qlx99 VERSION ([0-9.]+) .*/\1/p' CMakeLists.txt)
package=qlx99-$version-win32
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# windows_text FILE NAME: as Windows' editors take it, the Basic editor above all: German code page, Windows' line ends.
windows_text() { sed "s/@VERSION@/$version/g; s/\$/\r/" "$1" | iconv -f UTF-8 -t WINDOWS-1252 >"$folder/$2"; }

# With the date of the sources, and without owners, time zone, rights and order of this machine.
date=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct)}
like_anywhere() {
  find "$folder" -type d -exec chmod 755 {} + -o -exec chmod 644 {} +
  find "$folder" -exec touch -d "@$date" {} +
}

rm -f "build/$package".{zip,msi} build/SHA256SUMS
mkdir "$folder"/macros
windows_text install/INSTALL.txt INSTALL.txt
windows_text THIRD-PARTY-NOTICES.txt THIRD-PARTY-NOTICES.txt
windows_text macros/qlx99.bas macros/qlx99.bas
windows_text macros/letter.bas macros/letter.bas
windows_text macros/HANDBUCH.md macros/HANDBUCH.txt
cp docs/exports.md "$folder/macros"
cp "$binaries"/{qlx99.dll,atbtrv32.dll,qlx99server.exe,qlx.exe} "$folder"
like_anywhere
scripts/msi_package.sh "$folder" "$version" "build/$package.msi"

# What only the zip has.
mkdir "$folder"/c
windows_text install/qlx99.reg qlx99.reg
windows_text qlx99/qlx99.h c/qlx99.h
cp "$binaries"/qlx99.lib "$folder/c"
"$qlx" office create "$folder/office" >/dev/null
like_anywhere
root=$PWD
(cd "$folder" && find . ! -name . -printf '%P\n' | LC_ALL=C sort | TZ=UTC zip -X -q "$root/build/$package.zip" -@)

(cd build && sha256sum "$package".{zip,msi} >SHA256SUMS)
printf 'build/%s\n' "$package".{zip,msi}
