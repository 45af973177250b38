#!/usr/bin/env bash
# check_dll.sh DLL DEFINITION: whether the library exports exactly the names of its definition, undecorated, and needs
# no library but Windows' own.
set -euo pipefail
dll=$1 definition=$2
tables=$(i686-w64-mingw32-objdump -p "$dll")

expected=$(sed -nE 's/^ +([A-Za-z]+) = .*/\1/p' "$definition" | sort)
exported=$(sed -nE 's/^\t\[ *[0-9]+\] ([A-Za-z@0-9_]+)$/\1/p' <<<"$tables" | sort)
if ! diff <(echo "$expected") <(echo "$exported"); then
  echo "$dll does not export what $definition lists (< listed, > exported)"
  exit 1
fi

foreign=$(sed -nE 's/^\tDLL Name: (.*)$/\1/p' <<<"$tables" |
  grep -viE '^(advapi32|gdi32|kernel32|msvcrt|user32)\.dll$' || true)
if [ -n "$foreign" ]; then
  echo "$dll needs libraries that are not Windows' own: $foreign"
  exit 1
fi
