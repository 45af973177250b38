#!/usr/bin/env bash
# msi_package.sh FOLDER VERSION MSI: makes the Windows Installer package MSI of the files in FOLDER, as version VERSION.
# Equal files make equal packages; their time is that of the guide.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
folder=$1 version=$2 msi=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# guid WORDS...: always the same for the same words.
guid() {
  local hash
  hash=$(sha256sum <<<"$*")
  hash=${hash^^}
  echo "{${hash:0:8}-${hash:8:4}-5${hash:13:3}-8${hash:17:3}-${hash:20:12}}"
}

# statements FILE SED...: its statements, each in one line.
statements() { sed "${@:2}" -e '/^--/d' "$1" | awk -v RS= '{ gsub(/\n */, " "); print }'; }

# Two packages with equal contents are one product, any others are not.
contents=$(cd "$folder" && find . -type f -print0 | LC_ALL=C sort -z | xargs -0 sha256sum
  cd "$root" && sha256sum install/*.wxs install/*.sql scripts/msi_package.sh)
product=$(guid product "$version" "$contents")

(cd "$folder" && wixl -o "$work/made.msi" -D ProductCode="${product:1:-1}" -D Version="$version" "$root/install/qlx99.wxs")

{
  statements "$root/install/msi_tables.sql" -e "s/@VERSION@/$version/g"
  for value in DataRoot DocuRoot ProgramRoot; do
    statements "$root/install/msi_setting.sql" \
      -e "s/@VALUE@/$value/g; s/@PROPERTY@/${value^^}/g; s/@GUID@/$(guid "component $value")/"
  done
} >"$work/statements"
mapfile -t statements <"$work/statements"
msibuild "$work/made.msi" -q "${statements[@]}"

# wixl takes its own time and language, and leaves out that texts are Windows-1252.
time=$(TZ=UTC date -r "$folder/INSTALL.txt" '+%Y/%m/%d %H:%M:%S')
printf '%s\r\n' 'PropertyId	Value' 'i2	l255' '_SummaryInformation	PropertyId' \
  '1	1252' '2	Installation Database' "3	qlx99 $version" '4	qlx99' '7	Intel;1031' "9	$(guid package "$product")" \
  "12	$time" "13	$time" '14	500' '15	2' '18	msitools' '19	2' >"$work/_SummaryInformation.idt"
printf '\r\n\r\n1252\t_ForceCodepage\r\n' >"$work/_ForceCodepage.idt"
msibuild "$work/made.msi" -i "$work/_SummaryInformation.idt" -i "$work/_ForceCodepage.idt"
cp "$work/made.msi" "$msi"
