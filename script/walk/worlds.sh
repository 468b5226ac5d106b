# Worlds as wholes: scenarios, snapshots, a world that is exported and taken up again.
# Sourced by script/demo after the other parts.

title "A scenario shows what a screen has to cope with"
request GET /_host/scenarios
expect "ten of them, each with a sentence" 200 'length == 10 and all(.description | length > 20)'
request POST /_host/scenario/every-status
expect_body "one is begun while the host runs" '{"scenario": "every-status"}'
request POST /_host/login
settle
request GET /tav-loot/v1/player-loot
expect "every item has the status that its name says" 200 \
  'length > 40 and all((.lootName | split("_as_")[1] | ascii_upcase) == .redeemableStatus)'
request GET /tav-loot/v1/ready
expect_body "and the plugin is ready" true
request POST /_host/scenario/collector
request POST /_host/login
settle
request GET /tav-loot/v2/player-loot-map
expect "another one has 5,000 items" 200 '.playerLoot | length == 5000'

title "A world that was put aside comes back as it was"
request POST /_host/scenario/sample
request POST /_host/login
settle
request GET /tav-loot/v1/player-loot-map
before=$body
request PUT /_host/snapshots/before-the-chest
expect "it has a name" 200 '.name == "before-the-chest"'
request POST /tav-loot/v1/recipes/CHEST_lantern_OPEN/craft '["CHEST_lantern"]'
first=$(jq -S '[.added[] | {id: .playerLoot.lootId, count: .deltaCount}] | sort' <<<"$body")
request POST /_host/snapshots/before-the-chest/restore
settle
request GET /tav-loot/v1/player-loot-map
expect "the chest is closed again" 200 'map_values(.count) == ($before | map_values(.count))' --argjson before "$before"
request POST /tav-loot/v1/recipes/CHEST_lantern_OPEN/craft '["CHEST_lantern"]'
expect "and gives the same once more" 200 \
  '([.added[] | {id: .playerLoot.lootId, count: .deltaCount}] | sort) == $first' --argjson first "$first"

title "A world is a file, and a file can be taken up while the host runs"
curl -s "$url/_host/export" >"$work/world.yaml"
sed -i 's/^  displayName: .*/  displayName: Someone Else/; s/^  latency: .*/  latency: 0/' "$work/world.yaml"
request PUT /_host/import "@$work/world.yaml" application/yaml
expect_body "an edited export is imported" '{"imported": true}'
request GET /_host/world
expect "and is the present world" 200 '.player.displayName == "Someone Else" and .state.signedIn != null'
request PUT /_host/import '{"name": "Pier", "champions": [{"id": 1}]}'
expect_problem "a broken one says where" 400 "Bad Request" 'body:1:32: member "name" is missing'
request POST /_host/reset
expect_body "a reset goes back to the scenario's start" '{"reset": true}'
request DELETE /_host/snapshots/before-the-chest
expect "the snapshot is forgotten" 200 '.name == "before-the-chest"'
