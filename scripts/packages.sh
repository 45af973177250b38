# shellcheck shell=bash
# Sourced by run, test and other scripts: makes sure that this machine has what they use.

# need COMMAND_OR_FILE PACKAGE: notes the Debian package if the command or file is missing.
missing_packages=()
need() {
  case "$1" in
    /*) [ -e "$1" ] || missing_packages+=("$2") ;;
    *) command -v "$1" >/dev/null || missing_packages+=("$2") ;;
  esac
}

need_to_build() {
  need c++ g++
  need cmake cmake
  need ninja ninja-build
  [ -n "${SQLITE_SOURCE-}" ] || need npm npm # brings SQLite's source
  need /usr/include/CLI/CLI.hpp libcli11-dev
  need /usr/include/nlohmann/json.hpp nlohmann-json3-dev
  need i686-w64-mingw32-windres binutils-mingw-w64-i686 # compiles the dialogs, for Linux too
  need /usr/share/mingw-w64/include/winuser.h mingw-w64-common
}

need_to_test() {
  need clang++ clang
  need clang-tidy clang-tidy
  need clang-format clang-format
  need /usr/share/doc/libclang-rt-14-dev libclang-rt-14-dev
  need /usr/include/gmock/gmock.h libgmock-dev
  need /usr/src/googletest/CMakeLists.txt googletest # its sources, built for Windows
  need_for_windows
}

need_to_bench() {
  need /usr/include/benchmark/benchmark.h libbenchmark-dev
  need /usr/include/sql.h unixodbc-dev
  need /usr/lib/x86_64-linux-gnu/odbc/libsqlite3odbc.so libsqliteodbc
}

# What the Windows build needs, and Wine to run it.
need_for_windows() {
  need i686-w64-mingw32-g++-posix g++-mingw-w64-i686-posix
  # Without the means to set Wine up, the rest can be tested all the same.
  if can_be_root && ! scripts/wine --has-wine; then need debootstrap debootstrap; fi
}

need_to_package() {
  need zip zip
  need unzip unzip
  need wixl wixl
  need msibuild msitools
}

can_be_root() { [ "$(id -u)" -eq 0 ] || command -v sudo >/dev/null; }

# Installs what was noted, as root or through sudo; says what to install where neither can be had.
install_missing() {
  [ ${#missing_packages[@]} -gt 0 ] || return 0
  local as_root=()
  if ! can_be_root; then
    echo "Please install these Debian packages as root, then try again:" >&2
    echo "  apt-get install ${missing_packages[*]}" >&2
    exit 1
  fi
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  echo "Installing ${missing_packages[*]} (once; this takes a minute or two) ..." >&2
  local log
  log=$(mktemp)
  if ! { "${as_root[@]}" apt-get update &&
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
      apt-get install -y --no-install-recommends "${missing_packages[@]}"; } >"$log" 2>&1; then
    tail -20 "$log" >&2
    echo "The packages could not be installed; the whole output is in $log." >&2
    exit 1
  fi
  rm -f "$log"
}

# build PRESET [TARGET...]: configures and builds, showing the output only if something fails.
build() {
  local preset=$1 log="build/$1.log"
  shift
  mkdir -p build
  echo "Building (preset $preset; the first time takes some minutes) ..." >&2
  local command=(cmake --build --preset "$preset")
  if ! { cmake --preset "$preset" && "${command[@]}" ${1+--target "$@"}; } >"$log" 2>&1; then
    grep -E 'error|Error|FAILED|undefined' "$log" | head -40 >&2
    echo "The build failed; the whole output is in $log." >&2
    return 1
  fi
}
