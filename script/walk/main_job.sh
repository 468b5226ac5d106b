# The walk through the main job. Sourced by script/demo after the host has started.

map() { curl -s "$url/tav-loot/v2/player-loot-map"; }

title "The plugin is loaded and answers; nobody is signed in"
request GET /_host/health
expect "the host runs the plugin" 200 '.status == "running" and .plugin == "vwm-be-tav-loot"'
settle
request GET /tav-loot/v1/enabled
expect "loot is enabled by the world's configuration" 200 '. == true'
request GET /tav-loot/v1/ready
expect "the collections are not known yet" 200 '. == false'

title "Sign in and read the inventory"
request POST /_host/login
expect "the world's player signs in" 200 '.summonerId == 70014250'
settle
request GET /tav-loot/v2/player-loot-map
expect "44 kinds of loot and the new player's chest" 200 '(.playerLoot | length) == 45'
events
expect_events "each item was announced once" \
  '[.[] | select(.eventType == "Create" and (.uri | test("^/tav-loot/v1/player-loot/")))] | length >= 44 and (map(.uri) | length == (unique | length))'
expect_events "the whole map follows the items" 'any(.[]; .uri == "/tav-loot/v2/player-loot-map")'
request GET /tav-loot/v1/player-loot/CHAMPION_RENTAL_13
expect "a shard knows its champion and what it is worth" 200 \
  '.itemDesc != "" and .itemStatus == "FREE" and .redeemableStatus == "REDEEMABLE_RENTAL" and .disenchantValue == 90 and .upgradeEssenceName == "CURRENCY_champion"'

title "Open a chest"
before=$(map)
request POST /tav-loot/v1/recipes/CHEST_lantern_OPEN/craft '["CHEST_lantern"]'
opened=$body
expect "one chest is gone" 200 \
  '.removed | length == 1 and .[0].deltaCount == 1 and .[0].playerLoot.lootId == "CHEST_lantern" and .[0].playerLoot.count == 1'
expect "what it held is new" 200 '(.added | length) >= 2 and all(.added[]; .playerLoot.isNew and .deltaCount > 0)'
events
expect_events "the chest's count went out live" \
  'any(.[]; .uri == "/tav-loot/v1/player-loot/CHEST_lantern" and .eventType == "Update" and .data.count == 1)'
request GET /tav-loot/v2/player-loot-map
expect "the version grew by one" 200 '.version == $before.version + 1' --argjson before "$before"
expect "every count adds up" 200 \
  '. as $after | all($opened.added[]; .playerLoot.lootId as $id | $after.playerLoot[$id].count == ($before.playerLoot[$id].count // 0) + .deltaCount)' \
  --argjson before "$before" --argjson opened "$opened"

title "Redeem a shard"
request POST /tav-loot/v1/player-loot/CHAMPION_RENTAL_13/redeem
expect "the champion is rented now" 200 \
  '.redeemed | length == 1 and .[0].playerLoot.lootName == "CHAMPION_RENTAL_13" and .[0].deltaCount == 0'
events
expect_events "the last shard of the kind has left the inventory" \
  'any(.[]; .uri == "/tav-loot/v1/player-loot/CHAMPION_RENTAL_13" and .eventType == "Delete")'
expect_events "the permanent shard knows of the rental" \
  'any(.[]; .uri == "/tav-loot/v1/player-loot/CHAMPION_13" and .data.itemStatus == "RENTAL" and .data.redeemableStatus == "REDEEMABLE")'

title "What goes wrong says why"
request POST /tav-loot/v1/recipes/CHEST_new_player_OPEN/craft '["CHEST_harbour"]'
expect "a chest does not open with another one" 500 \
  '.status == 500 and (.detail | test("^Unexpected status in ProcessPlayerLootUpdateResponse: INVALID_INGREDIENTS$"))'
request POST /tav-loot/v1/recipes/CHEST_lantern_OPEN/craft '{"playerLootList":"CHEST_lantern"}'
expect "a body of the wrong shape is refused" 400 '.title == "Bad Request" and (.detail | test("vector because the input not a collection"))'
request GET /tav-loot/v1/player-loot/CHEST_unknown
expect "an unknown item is not found" 404 '.detail == "Not found"'
request GET /tav-loot/v1/nothing-here
expect "an unknown route is not found" 404 '.detail == "Not found"'
