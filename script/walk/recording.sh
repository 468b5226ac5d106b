# The recording of all that came before, replayed: the library does the same again.
# Sourced by script/demo after the other parts.

# replay FILE: leaves $status and $body.
replay() {
  printf '  > tav-loot-host replay %s\n' "${1##*/}"
  status=0
  body=$("${host_command[@]}" replay "$1" 2>"$work/errors") || status=$?
  printf '  < %s %s\n' "$status" "$(short "$(head -n 1 <<<"$body" | sed 's|^.*/||')")"
}

title "A recording of all this, replayed"
settle
cp "$work/recording" "$work/so-far.jsonl"
replay "$work/so-far.jsonl"
if [ "$status" = 0 ]; then
  passed "every call, event and response is the recorded one"
else
  failed "the replay differs: $body $(cat "$work/errors")"
fi
sed '/"publish"/s/CHEST_lantern/CHEST_other/' "$work/so-far.jsonl" >"$work/changed.jsonl"
line=$(grep -n -m 1 '"publish".*CHEST_other' "$work/changed.jsonl" | cut -d: -f1)
replay "$work/changed.jsonl"
if [ "$status" = 1 ] && [[ $body == *"changed.jsonl:$line: "* ]]; then
  passed "where an event is another one, that is the line it names"
else
  failed "the changed event in line $line is not found: $body $(cat "$work/errors")"
fi
