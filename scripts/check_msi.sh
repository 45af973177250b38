#!/usr/bin/env bash
# check_msi.sh MSI ZIP C_CALLER: whether the Windows Installer package MSI, made of the same files as ZIP, installs them
# where macros, the automation server and the tool find each other, takes the place of an older version, repairs, and
# goes without leaving anything of its own or taking anything of the office's. C_CALLER stands for a macro's host.
set -euo pipefail
msi=$1 zip=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

fail() {
  echo "$msi: $*"
  exit 1
}

cp "$msi" "$folder/new.msi"
unzip -q "$zip" -d "$folder"/zip
mkdir "$folder/host"
cp "$3" "$folder/host/c_caller.exe"
cp -r "$folder/zip" "$folder/older"
echo "an older guide" >"$folder/older/INSTALL.txt"
scripts/msi_package.sh "$folder/older" 0.9.0 "$folder/old.msi"

cat >"$folder/script.vbs" <<'END'
record = ""
CreateObject("qlx99.Library").SLesenDLL "12345678", record
WScript.Echo record
END
# look STATE: writes down what there is of ours and of the office's. everything STATE: of the whole machine.
cat >"$folder/look.bat" <<'END'
dir /s /b "%place%" >%1 2>nul
reg query HKLM\Software\qlx99 /s >>%1 2>nul
reg query HKLM\Software\Quorvane /s >>%1 2>nul
END
cat >"$folder/everything.bat" <<'END'
dir /b C:\ >%1.files
dir /s /b "C:\Program Files" C:\windows >>%1.files
regedit /E %1.registry HKEY_LOCAL_MACHINE\Software
reg query "%environment%" >%1.environment
END
cat >"$folder/story.bat" <<'END'
@echo off
set office=%CD%\zip\office
set options=HKLM\Software\Quorvane\Stelvora\Options
set environment=HKLM\System\CurrentControlSet\Control\Session Manager\Environment
rem Tests and ./run have had their offices here.
reg delete HKLM\Software\Quorvane /f >nul 2>nul
rem The script host registers something of its own when it is first used.
cscript //nologo script.vbs >nul 2>nul
mkdir C:\Kanzlei
rem Wine makes it for the first package, and keeps it.
mkdir C:\windows\Installer 2>nul
call everything before

set place=C:\Kanzlei\qlx99
msiexec /i old.msi /qn ADDLOCAL=ALL INSTALLFOLDER=%place% DATAROOT="%office%" DOCUROOT="%office%\Dokumente" PROGRAMROOT="%office%"
echo install the older one: %ERRORLEVEL%>>codes
msiexec /i new.msi /qn
echo upgrade: %ERRORLEVEL%>>codes
msiexec /i new.msi /qn DATAROOT=C:\Anderswo
echo once more: %ERRORLEVEL%>>codes
copy %place%\INSTALL.txt guide >nul
call look upgraded
msiexec /i old.msi /qn
echo go back: %ERRORLEVEL%>>codes

del %place%\qlx99.dll
reg add %options% /v DocuRoot /d C:\Anderswo /f >nul
reg delete %options% /v DataRoot /f >nul
rem What /fa means; Wine's own does nothing.
msiexec /i new.msi /qn REINSTALL=ALL REINSTALLMODE=amus
echo repair: %ERRORLEVEL%>>codes
call look repaired

rem As whoever logs on next has it. Where the older version was taken away Wine has left a semicolon.
for /f "tokens=2,*" %%a in ('reg query "%environment%" /v PATH') do call set found=%%b
set PATH=%found:;;=;%
cd host
qlx office check >..\check 2>&1
echo check: %ERRORLEVEL%>>..\codes
qlx letter 12345678 >..\letter 2>&1
c_caller 12345678 >..\macro 2>&1
cscript //nologo ..\script.vbs >..\script 2>&1
cd ..

msiexec /x new.msi /qn
echo remove: %ERRORLEVEL%>>codes
call look removed
set place=C:\Program Files\qlx99
msiexec /i new.msi /qn DATAROOT="%office%" DOCUROOT="%office%\Dokumente"
echo install again: %ERRORLEVEL%>>codes
call look again
reg add %options% /v ProgramName /d STELVORA.EXE /f >nul
msiexec /x {PRODUCT} /qn
echo remove by the product's code: %ERRORLEVEL%>>codes
call look left
reg delete HKLM\Software\Quorvane /f >nul
call everything after
END
product=$(msiinfo export "$msi" Property | tr -d '\r' | sed -n 's/^ProductCode\t//p')
sed -i "s/{PRODUCT}/$product/; s/\$/\r/" "$folder"/*.bat
# A message box would wait for somebody to read it.
wine=$PWD/scripts/wine
(cd "$folder" && timeout 300 "$wine" --own-windows cmd /c story.bat >told 2>&1) || true

# expect STATE LINE...: what was there then, files of ours as they are named and values as KEY\NAME=VALUE.
expect() {
  local state=$1
  shift
  tr -d '\r' <"$folder/$state" | awk '/^HKEY/ { key = $0; sub(/.*\\/, "", key) }
    /REG_SZ/ { name = $1; sub(/.*REG_SZ */, ""); print key "\\" name "=" $0; next }
    /^C:/ { sub(/^C:.(Kanzlei|Program Files).qlx99./, ""); gsub(/\\/, "/"); print }' | grep -vx macros | sort |
    diff <(printf '%s\n' "$@" | sed '/^$/d' | sort) - || fail "something else is there, $state (< expected, > there)"
}

diff - <(tr -d '\r' <"$folder/codes") <<'END' || fail "the installer has answered otherwise: $(cat "$folder/told")"
install the older one: 0
upgrade: 0
once more: 0
go back: 1603
repair: 0
check: 0
remove: 0
install again: 0
remove by the product's code: 0
END

files=$(zipinfo -1 "$zip" | grep -vE '^(c|office)/|/$|^atbtrv32.dll$|^qlx99.reg$')
office=Z:${folder//\//\\}\\zip\\office
all=("$files" 'qlx99\Folder=C:\Kanzlei\qlx99\' atbtrv32.dll 'qlx99\RecordManager=atbtrv32.dll')
for key in qlx99 Options; do
  all+=("$key\\DataRoot=$office" "$key\\DocuRoot=$office\\Dokumente" "$key\\ProgramRoot=$office")
done
expect upgraded "${all[@]}"
expect repaired "${all[@]/Options\\DocuRoot=*/Options\\DocuRoot=C:\\Anderswo}"
cmp "$folder/guide" "$folder/zip/INSTALL.txt" || fail "an upgrade leaves the older guide"
expect removed 'Options\DocuRoot=C:\Anderswo'
expect again "$files" 'qlx99\Folder=C:\Program Files\qlx99\' {qlx99,Options}"\\DataRoot=$office" 'Options\DocuRoot=C:\Anderswo'
expect left "Options\\DataRoot=$office" 'Options\DocuRoot=C:\Anderswo' 'Options\ProgramName=STELVORA.EXE'

for reader in macro script; do
  LC_ALL=C grep -q '^Brandst.tter ./. Wernicke|' "$folder/$reader" || fail "gives a $reader no record: $(cat "$folder/$reader")"
done
grep -q '^Sehr geehrter Herr Dr. Brandstätter,' "$folder/letter" || fail "gives no letter: $(cat "$folder/letter")"

# Wine's own leavings: keys of the installer without values, and a semicolon.
cleaned() { iconv -f UTF-16 -t UTF-8 "$folder/$1.registry" | tr -d '\r' | grep -vE '\\Installer(\\|\])|^$'; }
diff <(cleaned before) <(cleaned after) || fail "leaves something in the registry"
diff "$folder"/{before,after}.files || fail "leaves something on the disk"
diff <(tr -d '\r' <"$folder/before.environment") <(tr -d '\r' <"$folder/after.environment" | sed 's/;*$//') ||
  fail "leaves something in the environment"
