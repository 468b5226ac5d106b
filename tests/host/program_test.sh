#!/usr/bin/env bash
# Runs the program as a user does: program_test.sh HOST PLUGIN [LOOT_PLUGIN]. Prints what is not as it should be.
set -u
host=$1 plugin=$2 failures=0

# expect WHAT WANTED FOUND
expect() {
  [ "$2" = "$3" ] && return
  printf '%s: expected <%s>, found <%s>\n' "$1" "$2" "$3"
  failures=$((failures + 1))
}

# run ARGUMENT...: leaves status, standard output and the last line of standard error.
run() {
  output=$("$host" "$@" 2>"$errors")
  status=$?
  error=$(tail -n 1 "$errors")
}
errors=$(mktemp)
trap 'rm -f "$errors"' EXIT

beside() { run exec --plugin "$plugin" --log-level none -- "$@"; }

run --version
expect 'version' 0 "$status"
for wrong in '--port 65536' '--seed -1' '--seed 99999999999999999999' '--colour' 'exec' 'completion' 'completion fish' 'export' 'export pictures' \
  'export fixtures --clock real' 'export fixtures --port 1' 'replay' \
  '--seed 1 exec -- true' '-- true' 'exec --until-stdin-closes -- true' '--assets /no/such/folder' \
  '--allow-origin shop.test' '--scenario nope' '--log-level OKAY' '--log-level 1' '--audit=foo' '--audit=1'; do
  # shellcheck disable=SC2086
  run $wrong
  expect "status of $wrong" 2 "$status"
done
error=$("$host" --audit=1 2>&1 | head -n 1)
expect 'a wrong word' '--audit: must be one of on, strict, found 1' "$error"

for option in --record --world --state --plugin --assets --seed; do
  run $option ''
  expect "an empty value of $option" "2 $option: must not be empty" "$status $(head -n 1 "$errors")"
done
run exec --audit= -- true
expect 'an empty value of a flag' '2 --audit: must not be empty' "$status $(head -n 1 "$errors")"
error=$("$host" --clock 10000-01-01T00:00:00Z 2>&1 | head -n 1)
expect 'a time out of range' \
  '--clock: must be real or a time from 1970 to 9999 such as 2030-01-01T12:00:00Z, found 10000-01-01T00:00:00Z' "$error"

beside true
expect 'a command that succeeds' 0 "$status"
# shellcheck disable=SC2016
beside sh -c 'echo "$LOOT_HOST_URL"; exit 41'
expect 'status of the command' 41 "$status"
[[ $output =~ ^http://127\.0\.0\.1:[0-9]+$ ]] || expect 'the address' 'http://127.0.0.1:PORT' "$output"
beside printf '%s|' '' 'a b' '[1,2]' '--port' '--' '"'
expect 'arguments as they are' '|a b|[1,2]|--port|--|"|' "$output"
beside /no/such/program
expect 'no such program' '127 tav-loot-host: Cannot run /no/such/program: No such file or directory' "$status $error"
# shellcheck disable=SC2016
beside sh -c 'kill -KILL $$'
expect 'a command that is killed' 137 "$status"
run exec --plugin /no/such.so -- echo begun
expect 'a host that does not start' '1 ' "$status $output"

# Files are not written over what is there, nor when there is no such world.
folder=$(mktemp -d)
trap 'rm -rf "$errors" "$folder"' EXIT
touch "$folder/kept"
run export fixtures --output "$folder"
expect 'a folder in use' "1 tav-loot-host: $folder is not empty; with --force the files in it are replaced." "$status $error"
run export fixtures --output "$folder/kept"
expect 'a file for a folder' "1 tav-loot-host: $folder/kept is not a folder." "$status $error"
run export fixtures --output "$folder" --force --scenario nowhere
expect 'an unknown scenario' 2 "$status"
expect 'what is there' kept "$(ls "$folder")"

# What the plugin prints while it is loaded can be silenced as well.
if [ -n "${3:-}" ]; then
  for silent in --quiet '--log-level none'; do
    # shellcheck disable=SC2086
    "$host" exec --plugin "$3" $silent -- true 2>"$errors"
    expect "status and standard error with $silent" '0 ' "$? $(cat "$errors")"
  done
  "$host" exec --plugin "$3" -- true 2>"$errors"
  grep -q 'api registered' "$errors" || expect 'standard error without' 'api registered' "$(cat "$errors")"
fi

# on_terminal ARGUMENT...: counts the lines in colours that a terminal would get.
if command -v script >/dev/null; then
  broken=$(mktemp --suffix=.yaml)
  echo 'nmae: Pier' >"$broken"
  on_terminal() { TERM=xterm script -qec "$*" /dev/null | grep -c $'\x1b\\[3[13]m.*\x1b\\[0m'; }
  expect 'colours on a terminal' 1 "$(on_terminal "$host" check "$broken")"
  expect 'colours that are not wanted' 0 "$(NO_COLOR=1 on_terminal "$host" check "$broken")"
  expect 'colours in a pipe' 0 "$(on_terminal "$host" check "$broken" '|' cat)"
  rm "$broken"
fi

# A signal goes to the command, whose status counts.
"$host" exec --plugin "$plugin" --log-level none -- \
  bash -c 'trap "exit 9" TERM; echo begun; while :; do sleep 0.05; done' >"$errors" &
for _ in {1..600}; do grep -q begun "$errors" && break; sleep 0.05; done
kill -TERM $!
wait $!
expect 'a signal' 9 $?

# The manual page has every option and subcommand that completion offers.
manual=$("$host" manual) || expect 'status of manual' 0 $?
for word in $("$host" completion bash | sed -n "s/.*compgen -W '\(.*\)' -- .*/\1/p"); do
  case "${manual//\\-/-}" in *"$word"*) ;; *) expect 'the manual page' "$word" '' ;; esac
done

# A recording ends at a line's end, also when the host is killed, and can be replayed.
recording=$(mktemp)
for kill in TERM KILL; do
  : >"$recording"
  "$host" --plugin "$plugin" --port 0 --log-level none --record "$recording" >"$errors" &
  for _ in {1..600}; do grep -q '"ready"' "$errors" && break; sleep 0.05; done
  curl -s "$(grep -o 'http[^"]*' "$errors")tav-loot/v1/some" >/dev/null
  kill -$kill $!
  wait $! 2>/dev/null
  expect "the end of the recording, $kill" '1' "$(tail -c 1 "$recording" | wc -l)"
  run replay "$recording" --plugin "$plugin"
  expect "the replay, $kill" '0 all equal' "$status $(grep -o 'all equal' <<<"$output")"
done
sed -i 's/some|/other|/' "$recording"
run replay "$recording" --plugin "$plugin"
expect 'another response' '1 some|' "$status $(grep -A 1 '^Expected' <<<"$output" | grep -o 'some|')"
run replay "$errors" --plugin "$plugin"
expect 'no recording' "2 tav-loot-host: $errors:1: this is not a recording of tav-loot-host" "$status $error"
run exec --plugin "$plugin" --record /no/such/folder/file -- true
expect 'a recording that cannot be written' \
  '1 tav-loot-host: Cannot write the recording /no/such/folder/file: No such file or directory' "$status $error"
cp "$recording" "$recording.kept"
run exec --plugin "$plugin" --record "$recording" -- true
expect 'a recording over another file' "1 tav-loot-host: Cannot write the recording $recording: the file is not empty; remove it, or name another one" "$status $error"
cmp "$recording" "$recording.kept" || expect 'the file' kept changed
rm -f "$recording" "$recording.kept"

# complete WORD...: what the script offers for the last word.
# shellcheck disable=SC1090
. <("$host" completion bash)
complete_line() {
  COMP_WORDS=(tav-loot-host "$@") COMP_CWORD=$#
  _tav_loot_host 2>/dev/null
  printf '%s ' "${COMPREPLY[@]}"
}
expect 'a value' 'warning ' "$(complete_line --log-level w)"
expect 'a value after =' 'error ' "$(complete_line --log-level = e)"
expect 'a value of a flag' 'on strict ' "$(complete_line exec --audit =)"
expect 'no value of a flag' ' ' "$(complete_line --audit s)"
expect 'a value of a subcommand' 'always ' "$(complete_line exec --log-level a)"
expect 'an option' '--log-level ' "$(complete_line exec --log-l)"
expect 'subcommands' 'exec export ' "$(complete_line ex)"
expect 'what is exported' 'fixtures ' "$(complete_line export f)"
expect 'an argument' 'bash ' "$(complete_line completion '')"
expect 'a file' "${plugin%/*}/ " "$(complete_line --assets "${plugin%/*}" | sed 's|\([^/]\) $|\1/ |')"
expect 'a number' ' ' "$(complete_line --port '')"

exit $((failures > 0))
