# shellcheck shell=bash
# Tools from npm, in the build folder. Sourced after common.sh.

# install_tools LIST FOLDER: copies the folder LIST, which has a package-lock.json, to FOLDER, and installs what that
# names. Again only when the list has changed.
install_tools() {
  local folder=$2 installed=$2/installed-lock.json
  mkdir -p "$folder"
  cp "$1"/* "$1/.npmrc" "$folder/"
  if cmp -s "$folder/package-lock.json" "$installed"; then return; fi
  rm -f "$installed"
  (cd "$folder" && npm ci --ignore-scripts --no-progress --loglevel=error)
  cp "$folder/package-lock.json" "$installed"
}
