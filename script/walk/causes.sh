# What the host knows of what happened: the cause of an event, why a craft failed, what was taken and given.
# Sourced by script/demo after the main job.

title "Which call caused this event?"
request POST /tav-loot/v1/recipes/MATERIAL_key_FORGE/craft '["MATERIAL_key_fragment"]'
expect "a craft that is refused" 500 '.detail | endswith("MISSING_INGREDIENTS")'
request POST /_host/inventory '{"lootName": "MATERIAL_key_fragment", "delta": 5}'
request POST '/tav-loot/v1/refresh?force=true'
request POST /tav-loot/v1/recipes/MATERIAL_key_FORGE/craft '["MATERIAL_key_fragment"]'
expect "and one that is not" 200 '.added[0].playerLoot.lootId == "MATERIAL_key"'
events
event=$(sed -n 's/^id: //p' "$work/events" | tail -n 1)
request GET "/_host/timeline?event=$event"
expect "the timeline has the newest event" 200 '.rows | length == 1 and .[0].kind == "event"'
request GET "/_host/timeline/$(jq '.rows[0].id' <<<"$body")"
expect "the task that published it follows from the platform's response, that from the call, and that from the craft" 200 \
  '[.causes[].kind] == ["task", "service-response", "service-call", "request"] and .causes[-1].name == "/tav-loot/v1/recipes/MATERIAL_key_FORGE/craft"'

title "Why did my craft fail?"
printf '  > POST /tav-loot/v1/recipes/CHEST_new_player_OPEN/craft ["CHEST_harbour"]\n'
curl -s -o "$work/body" -D "$work/head" -X POST -H 'Content-Type: application/json' --data '["CHEST_harbour"]' \
  "$url/tav-loot/v1/recipes/CHEST_new_player_OPEN/craft"
row=$(tr -d '\r' <"$work/head" | sed -n 's/^X-Loot-Host-Row: //p')
body=$(tr -d '\r' <"$work/head" | sed -n 's/^X-Loot-Host-Refusal: //p')
status=$(sed -n '1s/^[^ ]* \([0-9]*\).*/\1/p' "$work/head")
printf '  < %s X-Loot-Host-Refusal: %s\n' "$status" "$body"
expect "the platform's reason is in a header" 500 '.status == "INVALID_INGREDIENTS" and (.details | length) > 0'
request GET "/_host/timeline/$row"
expect "and the request can be sent again" 200 '.kind == "request" and (.curl | startswith("curl "))'
again=$(jq -r .curl <<<"$body")
status=200
body=$(eval "$again -s")
printf '  $ %s\n  < %s\n' "$again" "$body"
expect "with the same outcome" 200 '.detail | endswith("INVALID_INGREDIENTS")'
request GET '/_host/ledger?refused=true'
expect "the ledger has the three that were refused last" 200 \
  '[.[-3:][].status] == ["MISSING_INGREDIENTS", "INVALID_INGREDIENTS", "INVALID_INGREDIENTS"]'
request GET '/_host/ledger?refused=false&limit=1'
expect "and what the last craft took and gave" 200 'map([.recipe, .took[0].lootId, .took[0].count, .gave[0].lootId, .gave[0].count]) ==
  [["MATERIAL_key_FORGE", "MATERIAL_key_fragment", 3, "MATERIAL_key", 1]]'
request GET '/_host/timeline?kind=sibling-response&path=/tav-inventory&limit=1'
request GET "/_host/timeline/$(jq '.rows[0].id' <<<"$body")"
expect "the player's token is in none of it" 200 '.payload == {TOURNAMENT_LOGO: "(masked)"}'
request PUT /_host/token '{"token": "made.up.token-of-mine"}'
request GET "/_host/timeline?kind=control&path=/_host/token&limit=1"
request GET "/_host/timeline/$(jq '.rows[0].id' <<<"$body")"
expect "nor is one that was set by hand" 200 '(.payload == {token: "(masked)"}) and (tojson | contains("made.up") | not)'
request DELETE /_host/token
