#!/usr/bin/env bash
# check_package.sh ZIP QLX: whether the zip holds just what the guide in it lists, in the form that Windows' editors
# take, whether it tells of the others whose code is in it, whether the changelog tells of its version, and whether the
# registry file in it, adapted as the guide says, leads QLX to the sample office in it.
# check_package.sh ZIP --wine C_CALLER: the latter with the programs of the zip, with a script that calls the automation
# server, and with the C program that is linked with its import library.
set -euo pipefail
zip=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
unzip -q "$zip" -d "$folder"

fail() {
  echo "$zip: $*"
  exit 1
}

# Of the sample office, the guide gives a pattern.
check_contents() {
  local listed samples
  listed=$(iconv -f WINDOWS-1252 -t UTF-8 "$folder/INSTALL.txt" | tr -d '\r' |
    sed -nE '/^Inhalt/,/^Voraus/s/^  ([^ ]+)( .*)?$/\1/p' | sed 's|\\|/|g')
  samples=$(cd office/sample && printf '%s\n' *.txt | sed -E 's/(.*)\.txt/office\/\U\1.KRV/')
  diff <(sort <<<"$listed"$'\n'"$samples") <(zipinfo -1 "$zip" | grep -vE '^(c|macros)/$' | sort) ||
    fail "holds something else than INSTALL.txt lists (< listed, > held)"
  local text
  for text in INSTALL.txt THIRD-PARTY-NOTICES.txt qlx99.reg macros/qlx99.bas macros/letter.bas macros/HANDBUCH.txt c/qlx99.h; do
    ! grep -qv $'\r$' "$folder/$text" || fail "$text does not have Windows' line ends"
  done
}

check_notices() {
  local sqlite name
  sqlite=$(sed -nE 's/^set\(SQLITE_VERSION (.*)\)/\1/p' cmake/sqlite.cmake)
  for name in "SQLite $sqlite" CLI11 "JSON for" GCC mingw-w64 winpthreads; do
    grep -q "^$name" "$folder/THIRD-PARTY-NOTICES.txt" || fail "has no notice of $name"
  done
}

check_changelog() {
  local version=${zip##*/qlx99-}
  grep -qF "## [${version%-win32.zip}]" CHANGELOG.md || fail "is of a version that CHANGELOG.md does not tell of"
}

# adapted_registry FOLDER: as the guide says, for a machine without 64-bit Windows.
adapted_registry() { sed -E "s/WOW6432Node.//; s|C:.*Daten|$1office|; s|C:.*Kanzlei|$1office|" "$folder/qlx99.reg"; }

call_programs_of_zip() {
  cp "$1" "$folder/c_caller.exe"
  adapted_registry "Z:$folder/" >"$folder/here.reg"
  sed 's/$/\r/' >"$folder/check.bat" <<'END'
@echo off
regedit /S here.reg
qlx office check >check.log 2>&1
qlx letter 12345678 >letter.txt
c_caller 12345678 >record.txt
qlx99server /regserver
cscript //nologo server.vbs >server.txt
:again
del atbtrv32.dll 2>nul
rem The server ends a moment after its client.
if exist atbtrv32.dll goto again
qlx office check >alone.log 2>&1
qlx letter 12345678 >>alone.log 2>&1
END
  printf '%s\r\n' 'record = ""' 'CreateObject("qlx99.Library").SLesenDLL "12345678", record' 'WScript.Echo record' \
    >"$folder/server.vbs"
  local wine=$PWD/scripts/wine
  # A message box would wait for somebody to read it.
  (cd "$folder" && timeout 100 "$wine" --own-windows cmd /c check.bat) || true
}

if [ "$2" = --wine ]; then
  call_programs_of_zip "$3"
  for answer in record server; do
    LC_ALL=C grep -q '^Brandst.tter ./. Wernicke|' "$folder/$answer.txt" || fail "gives no record: $answer.txt"
  done
  [ "$(grep -c 'There is no record manager' "$folder/alone.log")" -eq 2 ] ||
    fail "its tool does not miss the record manager"
else
  check_contents
  check_notices
  check_changelog
  # The registry here is a file of the same form.
  export QLX99_REGISTRY=$folder/here.reg
  adapted_registry "$folder/" | tr -d '\r' >"$QLX99_REGISTRY"
  "$2" office check >"$folder/check.log" || fail "the installation is not in order: $(cat "$folder/check.log")"
  "$2" letter 12345678 >"$folder/letter.txt"
fi
grep -q '^Sehr geehrter Herr Dr. Brandstätter,' "$folder/letter.txt" || fail "gives no letter"
