# A call held in the hand, a chosen reward, its odds, and what a broken platform looks like.
# Sourced by script/demo at the end of the walk.

# craft_and_wait: begins a craft that a rule holds, and waits until it is held.
craft_and_wait() {
  begin_craft
  wait_until /_host/held '. != []'
}

title "A held call: what a spinner waits for"
start_over
events
request PUT /_host/faults '{"rules": [{"service": "craft*", "action": "hold"}]}'
expect "crafts are held from now on" 200 '.rules | length == 1'
request POST /_host/next-result '{"recipe": "CHEST_lantern_OPEN", "added": [{"lootName": "MATERIAL_key", "count": 12}]}'
expect "and the next one will give twelve keys" 200 '.times == 1'
craft_and_wait
request GET /_host/held
expect "the call waits" 200 'map(.method) == ["craftPlayerLootWithRefId"]'
if [ -s "$work/begun_status" ]; then failed "the craft ended although its call is held"; else passed "so does the craft"; fi
request POST "/_host/held/$(jq '.[0].id' <<<"$body")" '{"action": "release"}'
expect "until it is released" 200 '.action == "release"'
end_craft
expect "the craft gives exactly what was chosen" 200 \
  '(.added | map([.playerLoot.lootName, .deltaCount])) == [["MATERIAL_key", 12]] and (.removed | map(.deltaCount)) == [1]'
events
expect_changes "and is published like any other" "Update v1/player-loot/CHEST_lantern" "Update v1/player-loot/MATERIAL_key" \
  "Update v1/player-loot-map" "Update v2/player-loot-map"

title "How rare is it really?"
request GET '/_host/odds/CHEST_lantern_OPEN?trials=5000'
expect "shares from 5,000 tries beside those of the tables" 200 \
  '.trials == 5000 and (.items | length > 0 and all(.low <= .share and .share <= .high and (.exact - .share | fabs) < 0.05))'

title "A platform that fails"
request PUT /_host/faults '{"rules": [{"service": "craft*", "action": "fail", "error": "out at sea", "nth": 1},
  {"service": "craft*", "action": "garble", "nth": 2}]}'
request POST "$craft" '["CHEST_lantern"]'
expect "a craft whose call fails" 500 '.detail | contains("out at sea")'
request GET /_host/faults
expect "the rule was used once" 200 '.rules | map([.matched, .applied]) == [[1, 1], [1, 0]]'
request DELETE /_host/faults
expect "and the platform is well again" 200 '.rules == []'

title "A reset with a held call"
request PUT /_host/faults '{"keep": true, "rules": [{"service": "craft*", "action": "hold"}]}'
craft_and_wait
request POST /_host/reset
end_craft
expect_problem "ends what waits for it" 500 "Internal Server Error" \
  "Error in ProcessPlayerLootUpdateResponse: Finalizing"
request GET /_host/held
expect_body "and lets go of it" '[]'
request GET /_host/faults
expect "rules that are kept begin again" 200 '.rules | map([.action, .times, .matched]) == [["hold", null, 0]]'
request DELETE /_host/faults
