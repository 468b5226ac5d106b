# shellcheck shell=bash disable=SC2154
# Checks the finished archives in a folder of their own, so that nothing is taken from the build by accident.
# Sourced by script/package.

unpacked=$PWD/build/package-check

fail() { echo "script/package: $*" >&2; exit 1; }

# Every file is as its checksum says, and every file has one.
check_sums() {
  local root=$1 listed files
  (cd "$root" && sha256sum --quiet --strict -c SHA256SUMS) || fail "checksums of $root"
  listed=$(sed 's/^[0-9a-f]*  //' "$root/SHA256SUMS")
  files=$(cd "$root" && find . -type f ! -name SHA256SUMS -printf '%P\n' | sort)
  [ "$listed" = "$files" ] || fail "files without a checksum in $root"
}

# check_header COMPILER C++-COMPILER FOLDER: alone and without a remark. In angle brackets, as the other form would
# find the checkout's own header first.
check_header() {
  local source='#include <plugin/host_interface.h>' strict=(-Wall -Wextra -Wpedantic -Wshadow -Werror -fsyntax-only)
  "$1" -std=c11 "${strict[@]}" -I "$3" -x c - <<<"$source" || fail "the header is no C11 for $1"
  "$2" -std=c++20 "${strict[@]}" -I "$3" -x c++ - <<<"$source" || fail "the header is no C++20 for $2"
}

# No binary says where it was built.
check_paths() {
  local binary place
  for binary in "$@"; do
    for place in "$PWD" "$HOME/" "${TMPDIR:-/tmp}/"; do
      # The root folder alone would match anything.
      [ "${#place}" -lt 4 ] || ! strings -a "$binary" | grep -m 5 -F -- "$place" || fail "a build path in $binary"
    done
  done
}

# Nothing but the C and C++ run times.
check_needs() {
  local binary foreign
  for binary in "$@"; do
    foreign=$(objdump -p "$binary" | awk '$1 == "NEEDED" { print $2 }' |
      grep -vxE '(libstdc\+\+\.so\.6|libgcc_s\.so\.1|libm\.so\.6|libc\.so\.6|ld-linux-x86-64\.so\.2)' || true)
    [ -z "$foreign" ] || fail "$binary needs $foreign"
  done
}

# check_imports PROGRAM: a Windows program that needs nothing but what is part of Windows.
check_imports() {
  local foreign
  foreign=$(i686-w64-mingw32-objdump -p "$1" | sed -n 's/.*DLL Name: //p' | tr -d '\r' |
    grep -vixE '(advapi32|bcrypt|kernel32|msvcrt|mswsock|rpcrt4|ws2_32)\.dll' || true)
  [ -z "$foreign" ] || fail "$1 needs $foreign"
}

build_id() { { readelf -n "$1" 2>/dev/null || i686-w64-mingw32-objdump -p "$1"; } | grep -E 'Build ID|RSDS'; }

# export_address TOOL-PREFIX BINARY: where the one export is, as symbols count it.
export_address() {
  local listing
  if [ -z "$1" ]; then nm -D --defined-only "$2" | cut -d ' ' -f 1; return; fi
  listing=$("$1objdump" -p "$2")
  printf '%x\n' $((16#$(awk '$1 == "ImageBase" { print $2 }' <<<"$listing") + \
    16#$(sed -n 's/.*+base\[ *1\] *\([0-9a-f]*\) .*/\1/p' <<<"$listing" | head -n 1)))
}

# check_symbols TOOL-PREFIX BINARY SYMBOLS: they are those of the binary, and lead from its export to the source.
check_symbols() {
  local tools=$1 binary=$2 symbols=$3 link=$unpacked/debuglink place
  "${tools}objcopy" --dump-section ".gnu_debuglink=$link" "$binary" "$unpacked/copy"
  [ "$(tr '\0' '\n' <"$link" | head -n 1)" = "$(basename "$symbols")" ] || fail "$binary names other symbols"
  # The checksum at the end is that of gzip's format.
  [ "$(tail -c 4 "$link" | od -An -tx1)" = "$(gzip -1c "$symbols" | tail -c 8 | head -c 4 | od -An -tx1)" ] ||
    fail "the checksum of $symbols in $binary"
  [ "$(build_id "$binary")" = "$(build_id "$symbols")" ] || fail "the build ids of $binary and $symbols"
  place=$("${tools}addr2line" -e "$symbols" "$(export_address "$tools" "$binary")")
  [[ $place =~ ^[./]*loot/load_tav_loot\.cc:[1-9] ]] || fail "$symbols: the export is at $place"
  ! "${tools}objdump" -h "$binary" | grep -q '\.debug_' || fail "symbols are left in $binary"
}

check_contents() {
  rm -rf "$unpacked"
  mkdir -p "$unpacked"
  unzip -q "$windows_archive" -d "$unpacked"
  tar -C "$unpacked" -xf "$linux_archive"
  tar -C "$unpacked" -xf "$symbols_archive"
  (cd "$archives" && sha256sum --quiet --strict -c SHA256SUMS) || fail "checksums of the archives"

  local dll=$unpacked/$windows/vwm-be-tav-loot.dll binaries=$unpacked/$linux/$place root
  for root in "$windows" "$linux" "$symbols"; do check_sums "$unpacked/$root"; done
  cmake -DOBJDUMP="$(command -v i686-w64-mingw32-objdump)" -DLIBRARY="$dll" -P tests/load/check_dll.cmake
  cmake -DNM="$(command -v nm)" -DLIBRARY="$binaries/vwm-be-tav-loot.so" -P tests/load/check_exports.cmake
  check_needs "$binaries"/*
  check_imports "$unpacked/$windows/tav-loot-host.exe"
  check_paths "$dll" "$unpacked/$windows/tav-loot-host.exe" "$binaries"/* "$unpacked/$symbols"/*/*
  check_header gcc g++ "$unpacked/$linux/usr/include/tav-loot"
  check_header i686-w64-mingw32-gcc-posix i686-w64-mingw32-g++-posix "$unpacked/$windows/include"
  check_symbols i686-w64-mingw32- "$dll" "$unpacked/$symbols/windows-x86/vwm-be-tav-loot.dll.debug"
  check_symbols '' "$binaries/vwm-be-tav-loot.so" "$unpacked/$symbols/linux-amd64/vwm-be-tav-loot.so.debug"
  lintian --allow-root --fail-on error,warning "$linux_package" || fail "lintian found faults in $linux_package"
  echo "Checked: checksums, one export, system libraries alone, no build path, the header as C11 and C++20,"
  echo "         symbols that belong to the binaries, a package that lintian accepts"
}

# compile_example COMPILER HEADERS EXAMPLE SYSTEM-SOURCE PROGRAM [options]: the packed C host, packed header alone.
compile_example() {
  local compiler=$1 headers=$2 example=$3/tests/load system=$4 program=$5
  shift 5
  "$compiler" -std=c11 -Wall -Wextra -Werror -I "$headers" -I "$example/../.." "$example/minimal_host.c" \
    "$example/$system" -o "$program" "$@"
}

run_example() { # run_example WHAT COMMAND...
  local what=$1 log=$unpacked/example.log
  shift
  timeout 120 "$@" >"$log" 2>&1 || { tail -n 40 "$log"; fail "$what did not run through the C host"; }
  echo "Proved: $what, $(grep -c 'as expected' "$log") steps of the C host as expected"
}

# check_development_host WHAT COMMAND...: a packed development host returns its player's inventory, and ends when its
# standard input does.
check_development_host() {
  local what=$1 url items pid ready=$unpacked/ready input=$unpacked/input
  shift
  rm -f "$ready" "$input"
  mkfifo "$input"
  "$@" --port 0 --until-stdin-closes <"$input" >"$ready" 2>"$unpacked/host.log" &
  pid=$!
  exec 3>"$input"
  for _ in {1..300}; do [ -s "$ready" ] && break; sleep 0.1; done
  url=$(jq -r '.url | rtrimstr("/")' "$ready") || true
  items=$(curl -sf --max-time 30 "$url/tav-loot/v2/player-loot-map" | jq '.playerLoot | length') || true
  exec 3>&-
  wait "$pid" || fail "$what ended with a failure"
  [ "${items:-0}" -gt 0 ] || { tail -n 20 "$unpacked/host.log"; fail "$what gave no inventory"; }
  echo "Proved: $what, an inventory of $items items"
}

# package_tool ARGUMENT...: dpkg on a folder of its own, which holds nothing that packages depend on.
package_tool() {
  fakeroot dpkg --root="$unpacked/root" --force-depends --log=/dev/null "$@" >"$unpacked/dpkg.log" 2>&1 ||
    { cat "$unpacked/dpkg.log"; fail "dpkg $*"; }
}

# The package is installed into a folder, used, and removed; nothing stays.
check_package() {
  local root=$unpacked/root program=$unpacked/root/usr/bin/tav-loot-host rest
  mkdir -p "$root/var/lib/dpkg/updates" "$root/var/lib/dpkg/info"
  touch "$root/var/lib/dpkg/status"
  package_tool --install "$linux_package"
  (cd "$root" && md5sum --quiet --strict -c var/lib/dpkg/info/vwm-be-tav-loot.md5sums) || fail "md5sums"
  [ "$("$program" --version)" = "tav-loot-host $version" ] || fail "the version of the installed program"
  "$program" check --strict host/worlds/collector.yaml || fail "the installed program refuses a world"
  check_development_host "the installed development host" "$program"
  zcat "$root/usr/share/man/man1/tav-loot-host.1.gz" | man --warnings -l - >"$unpacked/manual" 2>"$unpacked/manual.log"
  [ ! -s "$unpacked/manual.log" ] && grep -q -- --until-stdin-closes "$unpacked/manual" || fail "the manual page"
  # shellcheck disable=SC1091
  (. "$root/usr/share/bash-completion/completions/tav-loot-host" && complete -p tav-loot-host >/dev/null) || fail "completion"
  package_tool --purge vwm-be-tav-loot
  rest=$(find "$root" -path "$root/var/lib/dpkg" -prune -o -type f -print)
  [ -z "$rest" ] || fail "after its removal: $rest"
  echo "Proved: the package is installed and removed; program, manual page, completion"
}

check_running() {
  local usr=$unpacked/$linux/usr dll_root=$unpacked/$windows
  compile_example gcc "$usr/include/tav-loot" "$usr/share/doc/vwm-be-tav-loot/examples" system_posix.c \
    "$unpacked/minimal_host" -pthread -ldl
  run_example "the library for Linux" "$unpacked/minimal_host" "$unpacked/$linux/$place/vwm-be-tav-loot.so"
  check_development_host "the development host for Linux" "$unpacked/$linux/usr/bin/tav-loot-host"  # through its link

  check_package
  check_npm "$npm_archive"
  echo "Proved: the npm package, installed and used by a front end's tests"

  compile_example i686-w64-mingw32-gcc-posix "$dll_root/include" "$dll_root/example" system_windows.c \
    "$dll_root/minimal_host.exe" -static
  if script/wine --prepare; then
    (cd "$dll_root" && run_example "the DLL for Windows" "$OLDPWD/script/wine" ./minimal_host.exe vwm-be-tav-loot.dll)
    check_development_host "the development host for Windows" script/wine "$dll_root/tav-loot-host.exe"
  else
    echo "SKIPPED: the DLL was built and inspected, but neither loaded nor served: Wine cannot be had on this machine"
  fi
}
