# shellcheck shell=bash disable=SC2154
# Puts the files of each archive into a folder. Sourced by script/package, which sets version, commit and stage.

place=usr/lib/x86_64-linux-gnu/tav-loot # of the binaries for Linux
doc=usr/share/doc/vwm-be-tav-loot

put() { install -D -m "${3:-644}" "$1" "$2"; } # put FILE TARGET [MODE]

note() { install -d "$(dirname "$2")" && sed "s/@VERSION@/$version/g" "$1" >"$2"; } # note TEMPLATE TARGET

# split_symbols TOOL-PREFIX BINARY TARGET SYMBOLS [MODE]: the binary without its symbols, which go to SYMBOLS; it names
# that file, with a checksum, for debuggers.
split_symbols() {
  install -d "$(dirname "$3")" "$(dirname "$4")"
  "$1objcopy" --only-keep-debug "$2" "$4"
  chmod 644 "$4"
  "$1objcopy" --strip-all --add-gnu-debuglink="$4" "$2" "$3"
  chmod "${5:-644}" "$3"
}

put_stripped() { put "$2" "$3" 755 && "$1strip" --strip-all "$3"; } # put_stripped TOOL-PREFIX PROGRAM TARGET

# license_text PACKAGE[:NAME]: the text as the package has it, of one licence when it is named; of a part that the
# package's file leaves out, or that is no package of Debian (npm:NAME), as packaging/licenses/NAME has it.
license_text() {
  local file=/usr/share/doc/${1%%:*}/copyright
  [ ! -f "packaging/licenses/${1#*:}" ] || { cat "packaging/licenses/${1#*:}"; return; }
  case "$1" in
    # The paragraph that holds the text, not those that only name the licence.
    *:*) awk -v name="${1#*:}" 'BEGIN { RS = "" } $1 == "License:" && $2 == name && NF > 20' "$file" ;;
    *) cat "$file" ;;
  esac
}

# origin PACKAGE[:NAME]: where a part comes from, with its version.
origin() {
  case "$1" in
    npm:*) jq -r --arg name "${1#npm:}" '"npm \($name) \(.dependencies[$name])"' console/package.json ;;
    *) dpkg-query -W -f='Debian ${source:Package} ${source:Version}' "${1%%:*}" ;;
  esac
}

# components ARCHIVE: its lines of the list as name|licence|where|package.
components() { sed -n "s/^$1 *| *//p" packaging/components | sed 's/ *| */|/g'; }

# licenses ARCHIVE TARGET COMMAND...: the list of what is inside, and every text; the command prints the GPL.
licenses() {
  local archive=$1 target=$2 name license where package text
  shift 2
  {
    printf 'vwm-be-tav-loot %s contains parts of these projects:\n\n' "$version"
    while IFS='|' read -r name license where package; do
      printf '  %s (%s)\n    licence: %s\n    %s\n' "$name" "$(origin "$package")" "$license" "$where"
    done < <(components "$archive")
    printf '\nThe texts follow, as Debian or the project itself distributes them, then the GPL that GCC names.\n'
    while IFS='|' read -r name license where package; do
      text=$(license_text "$package")
      [ -n "$text" ] || { echo "script/package: no licence text for $name" >&2; exit 1; }
      printf '\n==== %s %s\n\n%s\n' "$name" "$(printf '=%.0s' {1..60})" "$text"
    done < <(components "$archive")
    printf '\n==== GPL-3 %s\n\n' "$(printf '=%.0s' {1..60})"
    "$@"
  } >"$target"
}

# build_note ARCHIVE TARGET COMPILER-PACKAGE: what the bytes come from; the same of all of it gives the same bytes.
build_note() {
  local packages
  mapfile -t packages < <({ printf '%s\n' "$3" cmake; components "$1" | sed 's/.*|//; s/:.*//'; } | grep -vx npm | sort -u)
  {
    printf 'version %s\ncommit %s\n\nBuilt with these packages:\n' "$version" "$commit"
    dpkg-query -W -f='${Package} ${Version}\n' "${packages[@]}"
  } >"$2"
}

# sums TOOL FOLDER TARGET: checksums of every file of the folder, those of the package itself apart.
sums() {
  (cd "$2" && find . -path ./DEBIAN -prune -o -type f ! -name SHA256SUMS -printf '%P\0' | sort -z | xargs -0 "$1") >"$3"
}

assemble_windows() {
  local root=$1 tools=i686-w64-mingw32- bin=build/package-windows/bin file
  split_symbols "$tools" "$bin/vwm-be-tav-loot.dll" "$root/vwm-be-tav-loot.dll" \
    "$stage/$symbols/windows-x86/vwm-be-tav-loot.dll.debug" 755
  put_stripped "$tools" "$bin/tav-loot-host.exe" "$root/tav-loot-host.exe"
  put plugin/host_interface.h "$root/include/plugin/host_interface.h"
  for file in host-interface api development-host worlds; do put "docs/$file.md" "$root/doc/$file.md"; done
  for file in minimal_host.c system.h system_windows.c; do put "tests/load/$file" "$root/example/tests/load/$file"; done
  note packaging/windows.md "$root/README.md"
  licenses windows "$root/LICENSES.txt" cat /usr/share/common-licenses/GPL-3
  build_note windows "$root/BUILD.txt" g++-mingw-w64-i686-posix
  sums sha256sum "$root" "$root/SHA256SUMS"
}

assemble_linux() {
  local root=$1 bin=build/package-linux/bin completions=$1/usr/share/bash-completion/completions file
  split_symbols '' "$bin/vwm-be-tav-loot.so" "$root/$place/vwm-be-tav-loot.so" \
    "$stage/$symbols/linux-amd64/vwm-be-tav-loot.so.debug"
  put_stripped '' "$bin/tav-loot-host" "$root/$place/tav-loot-host"
  install -d "$root/usr/bin" "$root/usr/share/man/man1" "$completions"
  # The program looks for the library beside itself, and sees through the link.
  ln -s ../lib/x86_64-linux-gnu/tav-loot/tav-loot-host "$root/usr/bin/tav-loot-host"
  put plugin/host_interface.h "$root/usr/include/tav-loot/plugin/host_interface.h"
  "$bin/tav-loot-host" manual | gzip -9n >"$root/usr/share/man/man1/tav-loot-host.1.gz"
  "$bin/tav-loot-host" completion bash >"$completions/tav-loot-host"
  for file in host-interface api development-host worlds; do put "docs/$file.md" "$root/$doc/$file.md"; done
  put host/worlds/world.schema.json "$root/$doc/world.schema.json"
  for file in minimal_host.c system.h system_posix.c; do put "tests/load/$file" "$root/$doc/examples/tests/load/$file"; done
  note packaging/linux.md "$root/$doc/README.md"
  licenses linux "$root/$doc/copyright" cat /usr/share/common-licenses/GPL-3
  build_note linux "$root/$doc/BUILD.txt" g++
  sums sha256sum "$root" "$root/SHA256SUMS"
}

# assemble_package LINUX ROOT: the files of the archive for Linux with what Debian wants beside them.
assemble_package() {
  local root=$2
  install -d "$root/DEBIAN"
  cp -a "$1/usr" "$root/"
  licenses linux "$root/$doc/copyright" echo "On Debian systems: /usr/share/common-licenses/GPL-3"
  changelog | gzip -9n >"$root/$doc/changelog.gz"
  put packaging/lintian-overrides "$root/usr/share/lintian/overrides/vwm-be-tav-loot"
  control "$root" >"$root/DEBIAN/control"
  sums md5sum "$root" "$root/DEBIAN/md5sums"
}

# assemble_symbols ROOT: what belongs to the symbols that the others have put there.
assemble_symbols() {
  note packaging/symbols.md "$1/README.md"
  sed -i "s/@COMMIT@/$commit/" "$1/README.md"
  sums sha256sum "$1" "$1/SHA256SUMS"
}

maintainer() { git log -1 --format='%an <%ae>'; }

changelog() {
  printf 'vwm-be-tav-loot (%s) unstable; urgency=medium\n\n  * Commit %s.\n\n' "$version" "$commit"
  printf ' -- %s  %s\n' "$(maintainer)" "$(date -R -d "@$SOURCE_DATE_EPOCH")"
}

# control ROOT: what dpkg-deb needs to make a package of the folder.
control() {
  local binaries depends scratch
  binaries=$(realpath "$1/$place")
  scratch=$stage/shlibdeps
  install -d "$scratch/debian"
  printf 'Source: vwm-be-tav-loot\n\nPackage: vwm-be-tav-loot\nArchitecture: amd64\n' >"$scratch/debian/control"
  depends=$(cd "$scratch" && dpkg-shlibdeps -O "$binaries/vwm-be-tav-loot.so" -e "$binaries/tav-loot-host" 2>/dev/null)
  cat <<EOF
Package: vwm-be-tav-loot
Version: $version
Architecture: amd64
Maintainer: $(maintainer)
Installed-Size: $(($(find "$1/usr" -type f -printf '%s\n' | awk '{ bytes += $1 } END { print bytes }') / 1024))
Depends: ${depends#shlibs:Depends=}
Section: devel
Priority: optional
Description: loot back end of the game client
 A plugin library that owns the signed-in player's loot and its recipes, the
 header for hosts that load it, and a development host that serves it over HTTP
 with a sample world.
EOF
}
