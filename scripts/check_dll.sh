#!/usr/bin/env bash
# check_dll.sh DLL DEFINITION [KILOBYTES]: whether the library
#   exports exactly the names of its definition, undecorated; of a program, which has none, that is /dev/null,
#   needs no library but Windows' own,
#   can be loaded at any address, does not execute its data, and carries no debug information,
#   says its own name and the project's version in its properties, and is smaller than so many kilobytes.
set -euo pipefail
dll=$1 definition=$2
tables=$(i686-w64-mingw32-objdump -p "$dll")
sections=$(i686-w64-mingw32-objdump -h "$dll")

fail() {
  echo "$dll $*"
  exit 1
}

expected=$(sed -nE 's/^ +([A-Za-z]+) = .*/\1/p' "$definition" | sort)
exported=$(sed -nE 's/^\t\[ *[0-9]+\] ([A-Za-z@0-9_]+)$/\1/p' <<<"$tables" | sort)
diff <(echo "$expected") <(echo "$exported") || fail "does not export what $definition lists (< listed, > exported)"

foreign=$(sed -nE 's/^\tDLL Name: (.*)$/\1/p' <<<"$tables" |
  grep -viE '^(advapi32|gdi32|kernel32|msvcrt|ntdll|ole32|oleaut32|rpcrt4|user32)\.dll$' || true)
[ -z "$foreign" ] || fail "needs libraries that are not Windows' own: $foreign"

{ grep -q 'DYNAMIC_BASE$' <<<"$tables" && grep -q ' \.reloc ' <<<"$sections"; } || fail "cannot be loaded at any address"
grep -q 'NX_COMPAT$' <<<"$tables" || fail "may execute its data"
! grep -qE ' \.(debug|stab)' <<<"$sections" || fail "carries debug information"

# Both the number, which installers compare, and the text, which people see.
version=$(sed -nE 's/^project\(qlx99 VERSION ([0-9.]+) .*/\1/p' CMakeLists.txt)
meant="FILEVERSION ${version//./, }, 0
FileVersion $version
OriginalFilename $(basename "$dll")"
said=$(i686-w64-mingw32-windres -J coff -O rc "$dll" |
  sed -nE 's/^ *(FILEVERSION .*)/\1/p; s/^ *VALUE "(FileVersion|OriginalFilename)", "([^"]*)".*/\1 \2/p')
diff <(echo "$meant") <(echo "$said") || fail "says something else in its properties (< meant, > said)"
[ "$(stat -c %s "$dll")" -lt $((${3-10000} * 1024)) ] || fail "has $3 KB or more"
