# shellcheck shell=bash
# The console's tools and sources in build/console, for every build. Sourced after common.sh.

console_tools=build/console

# prepare_console --omit=dev | --include=dev: what the bundle needs, or what the checks need as well. One at a time: the
# lock is held until the script ends. What is installed stays until the list of it changes.
prepare_console() {
  local list=$console_tools/package-lock.json installed=$console_tools/installed
  mkdir -p "$console_tools"
  exec 9>"$console_tools/lock"
  flock 9
  rm -rf "$console_tools/src" "$console_tools/test"
  cp -R console/. "$console_tools/"
  if grep -qxF -e "$1" -e --include=dev "$installed" 2>/dev/null && cmp -s "$list" "$console_tools/installed-lock.json"; then return; fi
  rm -f "$installed"
  (cd "$console_tools" && npm ci "$1" --ignore-scripts --no-progress --loglevel=error)
  cp "$list" "$console_tools/installed-lock.json"
  echo "$1" >"$installed"
}

# make_api_types DOCUMENT TARGET: types of the API that the document describes. In the folder of the tools.
make_api_types() {
  node_modules/.bin/openapi-typescript "$1" --default-non-nullable false -o "$2" >generate.log 2>&1 || { cat generate.log; exit 1; }
}

# bundle_console FOLDER: an absolute path.
bundle_console() { (cd "$console_tools" && node build.mjs "$1"); }
