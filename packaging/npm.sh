# shellcheck shell=bash disable=SC2154
# The npm package with the development host for Linux and its client. Sourced by script/package and script/check-npm, which
# set version.
# shellcheck source=script/lib/console.sh
. script/lib/console.sh

# bundle_client PROGRAM: the client, typed by what the program says of its API, in the console's tools' npm/package/dist.
bundle_client() {
  local program=$1 place=$console_tools/npm
  prepare_console --include=dev
  rm -rf "$place"
  mkdir -p "$place/package"
  cp -R packaging/npm/. "$place/"
  mkdir "$place/src/api"
  cp console/src/api/{client,types}.ts "$place/src/api/"
  # shellcheck disable=SC2016
  "$program" exec --log-level none -- sh -c 'curl -sf "$LOOT_HOST_URL/_host/openapi.json"' >"$place/openapi.json"
  (
    cd "$console_tools"
    make_api_types npm/openapi.json npm/src/api/loot-api.d.ts
    node_modules/.bin/tsc -p npm
    node_modules/.bin/esbuild npm/src/index.ts --bundle --platform=node --format=esm --target=node20 \
      --outfile=npm/package/dist/index.js --log-level=warning
  )
  cp "$place/src/api/loot-api.d.ts" "$place/package/dist/api/"
}

# pack_npm BINARIES LICENSES BUILD-NOTE TARGET-FOLDER: prints the name of the archive.
pack_npm() {
  local place=$console_tools/npm/package
  bundle_client "$1/tav-loot-host" >&2
  install -D -m 755 "$1/tav-loot-host" "$place/host/tav-loot-host"
  install -D -m 644 "$1/vwm-be-tav-loot.so" "$place/host/vwm-be-tav-loot.so"
  install -m 644 "$2" "$place/LICENSES.txt"
  install -m 644 "$3" "$place/BUILD.txt"
  sed "s/@VERSION@/$version/g" packaging/npm/README.md >"$place/README.md"
  jq --arg version "$version" '.version = $version' packaging/npm/package.json >"$place/package.json"
  npm pack "./$place" --pack-destination "$4" --silent
}

# check_npm ARCHIVE: a front end installs it, compiles against its types and runs its tests. The types need none of others.
check_npm() {
  local archive consumer modules=$PWD/$console_tools/node_modules
  local compiler=("$modules/.bin/tsc" --strict --exactOptionalPropertyTypes --module nodenext --target es2022)
  archive=$(realpath "$1")
  consumer=$(mktemp -d)
  cp tests/npm/* "$consumer/"
  if (cd "$consumer" && npm install --offline --no-audit --no-fund --silent "$archive" &&
    "${compiler[@]}" --noEmit --lib es2022 --typeRoots none node_modules/tav-loot-host/dist/index.d.ts &&
    "${compiler[@]}" --skipLibCheck --noUnusedLocals --outDir built --typeRoots "$modules/@types" ./*.ts &&
    node --test --test-timeout=120000 built/ && [ "$(npx --offline tav-loot-host --version)" = "tav-loot-host $version" ]); then
    rm -rf "$consumer"
  else
    rm -rf "$consumer"
    echo "$script: the npm package does not do what it should" >&2
    exit 1
  fi
}
