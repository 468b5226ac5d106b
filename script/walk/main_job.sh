# The main job: sign in, read the inventory, open a chest, redeem a shard. Sourced by script/demo.

title "The plugin is loaded and responds; no player is signed in"
request GET /_host/health
expect "the host runs the plugin" 200 '.status == "running" and .plugin == "vwm-be-tav-loot" and .version == "18.0.0"'
settle
request GET /tav-loot/v1/enabled
expect_body "loot is enabled by the world's configuration" true
request GET /tav-loot/v1/ready
expect_body "the collections are not known yet" false
events

title "Sign in: the plugin gets ready and publishes the inventory"
request POST /_host/login
expect_body "the world's player signs in" '{"summonerId": 70014250, "accountId": 880231}'
events
expect_events "it became ready, once, when the sixth source had responded" \
  '[.[] | select(.uri == "/tav-loot/v1/ready") | [.eventType, .data]] == [["Update", true]]'
expect_events "45 items were announced, each once: 44 of the world and the new player's chest" \
  '[.[] | select(.eventType == "Create") | .uri] | length == 45 and (unique | length) == 45 and any(. == "/tav-loot/v1/player-loot/CHEST_new_player")'
expect_events "the maps follow the items, and the display categories the maps" \
  '[.[-3:][] | .uri] == ["/tav-loot/v1/player-loot-map", "/tav-loot/v2/player-loot-map", "/tav-loot/v1/player-display-categories"]'
published=$(jq -c 'select(.uri == "/tav-loot/v2/player-loot-map") | .data' "$work/new" | tail -n 1)
request GET /tav-loot/v1/ready
expect_body "and says so" true
request GET /tav-loot/v2/player-loot-map
expect "the map is the one that was published" 200 '. == $published and (.playerLoot | length) == 45' --argjson published "$published"
before=$body
request GET /tav-loot/v1/player-loot-map
expect "the first map has the same items and no version" 200 '. == $before.playerLoot' --argjson before "$before"
request GET /tav-loot/v1/player-loot
expect "so has the list" 200 'sort_by(.lootId) == ([$before.playerLoot[]] | sort_by(.lootId))' --argjson before "$before"
request GET /tav-loot/v1/player-loot/CHAMPION_RENTAL_13
expect_body "a shard knows its champion and what it is worth" '{
  "lootName": "CHAMPION_RENTAL_13", "lootId": "CHAMPION_RENTAL_13", "refId": "",
  "localizedName": "", "localizedDescription": "", "itemDesc": "Veshti of Nine Kites",
  "displayCategories": "CHAMPION", "rarity": "DEFAULT", "tags": "shard", "type": "CHAMPION_RENTAL", "asset": "",
  "tilePath": "/tav-game-data/assets/art/champions/13/tile.png",
  "splashPath": "/tav-game-data/assets/art/champions/13/splash.png", "shadowPath": "",
  "upgradeLootName": "CHAMPION_13", "upgradeEssenceName": "CURRENCY_champion", "disenchantLootName": "CURRENCY_champion",
  "itemStatus": "FREE", "parentItemStatus": "NONE", "redeemableStatus": "REDEEMABLE_RENTAL", "count": 1,
  "rentalGames": 0, "storeItemId": 13, "parentStoreItemId": 0, "value": 450, "upgradeEssenceValue": 270,
  "disenchantValue": 90, "expiryTime": -1, "rentalSeconds": 604800, "isNew": false, "isRental": true}'

title "Open a chest"
request POST /tav-loot/v1/recipes/CHEST_lantern_OPEN/craft '["CHEST_lantern"]'
opened=$body
expect "one chest of two is gone, what it held is new" 200 \
  'map_values(map([.deltaCount, .playerLoot.lootId, .playerLoot.count, .playerLoot.isNew])) == {
     added: [[1, "SKIN_RENTAL_13001", 1, true], [1, "EMOTE_703", 1, true], [60, "CURRENCY_cosmetic", 1540, true]],
     removed: [[1, "CHEST_lantern", 1, false]], redeemed: []}'
events
expect_changes "exactly these changes went out live" \
  "Update v1/player-loot/CHEST_lantern" "Update v1/player-loot/CURRENCY_cosmetic" \
  "Create v1/player-loot/EMOTE_703" "Create v1/player-loot/SKIN_RENTAL_13001" \
  "Update v1/player-loot-map" "Update v2/player-loot-map"
request GET /tav-loot/v2/player-loot-map
expect "the version grew by one, the items are those of the response, all others are as they were" 200 \
  '. == {version: ($before.version + 1), playerLoot: ($before.playerLoot + ([$opened | .added[], .removed[] | .playerLoot | {(.lootId): .}] | add))}' \
  --argjson before "$before" --argjson opened "$opened"
expect_event "and that is what was published" v2/player-loot-map "$body"

title "Redeem a shard"
request POST /tav-loot/v1/player-loot/CHAMPION_RENTAL_13/redeem
expect "the champion is rented, the shard used up" 200 \
  'map_values(map([.deltaCount, .playerLoot.lootId, .playerLoot.count, .playerLoot.itemStatus, .playerLoot.redeemableStatus])) == {
     added: [], removed: [[1, "CHAMPION_RENTAL_13", 0, "RENTAL", "ALREADY_RENTED"]],
     redeemed: [[0, "CHAMPION_RENTAL_13", 0, "RENTAL", "ALREADY_RENTED"]]}'
events
expect_changes "the shard left, all that belongs to the champion knows of the rental" \
  "Delete v1/player-loot/CHAMPION_RENTAL_13" "Update v1/player-loot/CHAMPION_13" \
  "Update v1/player-loot/CHAMPION_TOKEN_star-13" \
  "Update v1/player-loot/SKIN_13001" "Update v1/player-loot/SKIN_RENTAL_13001" \
  "Update v1/player-loot-map" "Update v2/player-loot-map"
request GET /tav-loot/v1/player-loot/CHAMPION_13
expect "the permanent shard may still be redeemed" 200 \
  '[.count, .itemStatus, .redeemableStatus] == [1, "RENTAL", "REDEEMABLE"]'
request GET /tav-loot/v1/player-loot/CHAMPION_RENTAL_13
expect_problem "the used shard is not found" 404 "Not Found" "Not found"
