#!/usr/bin/env bash
# check_dll.sh DLL DEFINITION [VERSION_HEADER KILOBYTES]: whether the library
#   exports exactly the names of its definition, undecorated,
#   needs no library but Windows' own,
#   can be loaded at any address, does not execute its data, and carries no debug information,
#   says the version of the header in its properties, and is smaller than so many kilobytes.
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
  grep -viE '^(advapi32|gdi32|kernel32|msvcrt|user32)\.dll$' || true)
[ -z "$foreign" ] || fail "needs libraries that are not Windows' own: $foreign"

{ grep -q 'DYNAMIC_BASE$' <<<"$tables" && grep -q ' \.reloc ' <<<"$sections"; } || fail "cannot be loaded at any address"
grep -q 'NX_COMPAT$' <<<"$tables" || fail "may execute its data"
! grep -qE ' \.(debug|stab)' <<<"$sections" || fail "carries debug information"
[ $# -gt 2 ] || exit 0

# Both the number, which installers compare, and the text, which people see.
said=$(i686-w64-mingw32-windres -J coff -O rc "$dll" | sed -nE 's/^ *(VALUE "|)(FILEVERSION |FileVersion", )/\2/p')
meant=$(sed -nE 's/^#define QLX99_VERSION_NUMBERS /FILEVERSION /p; s/^#define QLX99_VERSION_TEXT /FileVersion", /p' "$3")
diff <(echo "$meant") <(echo "$said") || fail "has another version than $3 (< there, > here)"
[ "$(stat -c %s "$dll")" -lt $(($4 * 1024)) ] || fail "has $4 KB or more"
