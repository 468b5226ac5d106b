# Tools of the demonstration walk: a host to talk to, readable output, and checks that count.
# Sourced by script/demo.

work=$(mktemp -d)
host_pid=
events_pid=
checks=0
failures=()
url=
status=
body=
seen_events=0

stop_all() {
  [ -n "$events_pid" ] && kill "$events_pid" 2>/dev/null || true
  [ -n "$host_pid" ] && kill "$host_pid" 2>/dev/null && wait "$host_pid" 2>/dev/null || true
  rm -rf "$work"
}
trap stop_all EXIT
trap 'exit 130' INT TERM

# start_host PORT: starts the development host (the command in $host_command), waits for its ready line, follows its live events.
start_host() {
  "${host_command[@]}" --port "$1" --seed 7 --no-login --audit --record "$work/recording" >"$work/ready" 2>"$work/log" &
  host_pid=$!
  for _ in $(seq 600); do
    [ -s "$work/ready" ] && break
    kill -0 "$host_pid" 2>/dev/null || { cat "$work/log"; exit 1; }
    sleep 0.1
  done
  url=$(jq -r '.url | rtrimstr("/")' "$work/ready")
  curl -sN "$url/_host/events" >"$work/events" &
  events_pid=$!
}

keep_serving() { wait "$host_pid"; }

# What of a response is worth a line: items by their id, count and status, long lists by their length.
digest='
  def item: "\(.lootId) x\(.count)"
    + (if .isNew then " new" else "" end) + " \(.itemStatus)/\(.redeemableStatus)";
  def grant: "grant \(.id) for game \(.gameId)" + (if .msgId != "" then " (\(.msgId))" else "" end);
  def recipe: ([.slots[] | "\(.quantity) \(.tags)"] | join(" + ")) as $in
    | ([.outputs[] | "\(.quantity) \(.lootName)"] | join(" + ")) as $out | "\(.recipeName): \($in) -> \($out)";
  def brief:
    if type == "array" then (if length > 6 then "[\(length) entries]" else "[" + (map(brief) | join(", ")) + "]" end)
    elif type != "object" then tojson
    elif has("lootId") then item
    elif has("gameId") then grant
    elif has("slots") then recipe
    elif has("actionType") then "\(.name) " + (if .enabled then "enabled" else "disabled" end)
    elif has("acknowledged") then "\(.id) x\(.count) " + (if .acknowledged then "seen" else "not seen" end)
    elif has("acknowledgements") then "acknowledged: " + ([.acknowledgements[].msgId] | join(", "))
    elif has("subscriptions") then "\(.status), \(.plugin) \(.version)"
    elif has("deltaCount") then "\(.deltaCount) of \(.playerLoot | item)"
    elif has("playerLoot") then "version \(.version), \(.playerLoot | length) items"
    elif has("added") then to_entries | map("\(.key) \(.value | brief)") | join("; ")
    elif length > 0 and (map(type == "object" and has("lootId")) | all) then "\(length) items by loot id"
    else tojson end;
  brief'

title() { printf '\n%s\n' "$bold$*$plain"; }
short() { if [ "${#1}" -gt 220 ]; then printf '%s ... (%d characters)' "${1:0:200}" "${#1}"; else printf '%s' "$1"; fi; }

# request METHOD PATH [BODY [TYPE]]: sends it (a body is JSON unless its type is given; "@FILE" sends a
# file), prints both sides, leaves $status and $body.
request() {
  local arguments=(-s -o "$work/body" -w '%{http_code}' -X "$1")
  if [ $# -gt 2 ]; then arguments+=(-H "Content-Type: ${4:-application/json}" --data-binary "$3"); fi
  local sent=${3:-}
  [ "${sent:0:1}" = @ ] && sent="$(wc -c <"${sent:1}") bytes"
  printf '  > %s %s %s\n' "$1" "$2" "${4:+($4)}${3+${4:+ }}$(tr -dc '[:print:]' <<<"$sent")"
  status=$(curl "${arguments[@]}" "$url$2")
  body=$(cat "$work/body")
  printf '  < %s %s\n' "$status" "$(short "$(jq -r "$digest" <<<"$body" 2>/dev/null || echo "$body")")"
}

# begin_craft: sends a craft and does not wait for it; $work/begun_status is empty until it has ended. end_craft: waits, and
# leaves $status and $body.
craft=/tav-loot/v1/recipes/CHEST_lantern_OPEN/craft
begin_craft() {
  printf '  > POST %s ["CHEST_lantern"]\n' "$craft"
  : >"$work/begun_status"
  curl -s -o "$work/begun" -w '%{http_code}' -H 'Content-Type: application/json' -d '["CHEST_lantern"]' "$url$craft" \
    >"$work/begun_status" &
  begun_pid=$!
}
end_craft() {
  wait "$begun_pid" || true
  status=$(cat "$work/begun_status")
  body=$(cat "$work/begun")
  printf '  < %s %s\n' "$status" "$(short "$(jq -r "$digest" <<<"$body")")"
}

# wait_until PATH JQ-TEST: reads it quietly until it passes the test, ten seconds at most.
wait_until() {
  for _ in $(seq 200); do
    curl -s "$url$1" | jq -e "$2" >/dev/null && break
    sleep 0.05
  done
}

# request_packed PATH: reads it as MessagePack, shows the bytes, leaves $status and the files head and body.
request_packed() {
  printf '  > GET %s (Accept: application/x-msgpack)\n' "$1"
  status=$(curl -s -o "$work/body" -D "$work/head" -w '%{http_code}' -H 'Accept: application/x-msgpack' "$url$1")
  printf '  < %s %s\n' "$status" "$(short "$(od -An -v -tx1 "$work/body" | tr -d '\n')")"
}

# settle: waits until the host has nothing left to do.
settle() {
  curl -s -o /dev/null -X POST "$url/_host/idle"
  sleep 0.1
}

# events: prints the live events that came since the last call and leaves them in $work/new, one a line.
events() {
  settle
  grep '^data: ' "$work/events" | cut -c7- | tail -n +$((seen_events + 1)) >"$work/new" || true
  seen_events=$((seen_events + $(wc -l <"$work/new")))
  local line shown=0
  while IFS= read -r line; do
    shown=$((shown + 1))
    [ "$shown" -le 8 ] && printf '  ~ %s\n' "$(short "$(jq -r '"\(.eventType) \(.uri)"' <<<"$line")  $(jq -r "if .data == null then \"\" else (.data | $digest) end" <<<"$line")")"
  done <"$work/new"
  [ "$shown" -gt 8 ] && printf '  ~ ... and %d more\n' $((shown - 8))
  return 0
}

passed() { checks=$((checks + 1)); printf '    ok: %s\n' "$1"; }
failed() { checks=$((checks + 1)); failures+=("$1"); printf '    %s\n' "${red}UNEXPECTED: $1$plain"; }

# expect TEXT STATUS JQ-TEST [jq arguments]: the last response has that status and passes the test.
expect() {
  local text=$1 wanted=$2 test=$3
  shift 3
  if [ "$status" = "$wanted" ] && { [ "$test" = "" ] || jq -e "$@" "$test" <<<"$body" >/dev/null 2>&1; }; then
    passed "$text"
  else
    failed "$text (status $status, wanted $wanted: $test)"
  fi
}

# expect_body TEXT JSON: the last response is a success with exactly this body.
expect_body() { expect "$1" 200 '. == $wanted' --argjson wanted "$2"; }

# expect_packed TEXT BYTES: the last response is MessagePack with exactly these bytes (a format of printf).
expect_packed() {
  # shellcheck disable=SC2059
  if [ "$status" = 200 ] && printf "$2" | cmp -s - "$work/body" &&
    grep -qi '^content-type: application/x-msgpack' "$work/head" && grep -qi '^vary: accept' "$work/head"; then
    passed "$1"
  else
    failed "$1 (status $status, wanted $2)"
  fi
}

# expect_nothing TEXT: the last response is a success without a body.
expect_nothing() { expect "$1" 204 ''; }

# expect_problem TEXT STATUS TITLE DETAIL: the last response is exactly this failure.
expect_problem() {
  expect "$1" "$2" '. == {status: $status, title: $title, detail: $detail}' \
    --argjson status "$2" --arg title "$3" --arg detail "$4"
}

# expect_events TEXT JQ-TEST [jq arguments]: the list of new events passes the test.
expect_events() {
  local text=$1 test=$2
  shift 2
  if jq -s -e "$test" "$work/new" "$@" >/dev/null 2>&1; then passed "$text"; else failed "$text: $test"; fi
}

# expect_changes TEXT ["TYPE PATH" ...]: the new events report exactly these changes, in any order. Of
# several events of one path the last one counts. Paths are those below "/tav-loot/".
expect_changes() {
  local text=$1
  shift
  expect_events "$text" \
    '(group_by(.uri) | map(last | "\(.eventType) \(.uri | ltrimstr("/tav-loot/"))") | sort) == ($ARGS.positional | sort)' \
    --args "$@"
}

# expect_event TEXT PATH JSON: the last new event of the path below "/tav-loot/" is an update to this.
expect_event() {
  expect_events "$1" '[.[] | select(.uri == "/tav-loot/" + $path)] | last | .eventType == "Update" and .data == $wanted' \
    --arg path "$2" --argjson wanted "$3"
}

summary() {
  echo
  if [ "${#failures[@]}" -eq 0 ]; then
    echo "All $checks checks of the walk passed."
  else
    echo "The end of the host's log:"
    tail -n 40 "$work/log"
    echo "$red${#failures[@]} of $checks checks of the walk FAILED:$plain"
    printf '  %s\n' "${failures[@]}"
    exit 1
  fi
}

# start_over: the sample world as it is at the start, its player signed in, all of it read.
start_over() {
  curl -sf -o /dev/null -X POST "$url/_host/reset"
  curl -sf -o /dev/null -X POST "$url/_host/login"
  settle
}
