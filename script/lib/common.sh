# What every shell script here begins with: errors end it, the root of the project is the working folder, --help
# prints the comment at its top and does nothing else, unknown options are refused, builds show their progress.
# Sourced with "$@" as arguments.
set -euo pipefail
script=$(realpath "$0")
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
script=${script#"$PWD/"}

usage() { sed -n '2,${/^# shellcheck/q; /^#/!q; s/^# \{0,1\}//p}' "$script"; }

# refuse ARGUMENT: an argument that the script does not know.
refuse() {
  case "$1" in -h | --help) usage; exit 0 ;; esac
  echo "$script: unknown argument: $1 ($script --help lists what it takes)" >&2
  exit 2
}
case "${1:-}" in -h | --help) usage; exit 0 ;; esac

# refuse_all ARGUMENT...: for a script, or a rest of arguments, that takes none.
refuse_all() { [ $# -eq 0 ] || refuse "$1"; }

bold='' red='' plain=''
if [ -t 1 ] && [ -z "${NO_COLOR:-}" ]; then bold=$'\033[1m' red=$'\033[31m' plain=$'\033[0m'; fi

# show_progress: of a build's output the steps, "[4/120] what": on a terminal as one line that changes, elsewhere a
# line for each tenth of the work.
show_progress() {
  local terminal=0 width=80
  if [ -t 1 ]; then terminal=1 width=$(tput cols 2>/dev/null || echo 80); fi
  awk -v terminal="$terminal" -v width="$width" '
    match($0, /^\[[0-9]+\/[0-9]+\]/) {
      split(substr($0, 2, RLENGTH - 2), step, "/")
      tenth = int(10 * step[1] / step[2])
      if (terminal) { printf "\r\033[K%s", substr($0, 1, width - 1); shown = 1 }
      else if (tenth > last) print "  " 10 * tenth " % of " step[2] " steps"
      if (tenth > last) last = tenth
      fflush()
    }
    END { if (shown) printf "\r\033[K" }'
}

# logged LOG COMMAND...: runs it with its output in LOG, shows a build's progress, and ends the script with the
# end of the log when it fails.
logged() {
  local log=$1
  shift
  mkdir -p "$(dirname "$log")"
  NINJA_STATUS='[%f/%t] ' "$@" 2>&1 | tee "$log" | show_progress || {
    tail -n 60 "$log" | cut -c -2000
    echo "${red}Failed: the whole log is $log$plain"
    exit 1
  }
}

# build PRESET TARGET...: configures the preset and builds the targets, or all of them.
build() {
  local preset=$1
  shift
  echo "Building build/$preset ..."
  logged "build/$preset/build.log" build_preset "$preset" "$@"
}
build_preset() {
  local preset=$1
  shift
  cmake --preset "$preset" && cmake --build "build/$preset" ${1:+--target "$@"}
}
