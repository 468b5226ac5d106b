# Everything around the main job: reading again, definitions, settings, refusals, the event stream.
# Sourced by script/demo after the main job.

title "Read everything again"
request POST '/tav-loot/v1/refresh?force=true'
expect_body "forced: waits for the platform" '"SUCCESS"'
request POST /tav-loot/v1/refresh
expect_body "not forced: not twice in three seconds" '"TOO_FREQUENT"'
events
expect_changes "items read again are new no longer" \
  "Update v1/player-loot/SKIN_RENTAL_13001" "Update v1/player-loot/CURRENCY_cosmetic" "Update v1/player-loot/MATERIAL_key" \
  "Update v1/player-loot-map" "Update v2/player-loot-map"

title "Definitions and settings"
request GET /tav-loot/v1/loot-items
expect "all 66 definitions" 200 'length == 66 and .[0] == {lootName: "CHEST_harbour", asset: "chest_harbour", type: "CHEST",
  rarity: "DEFAULT", value: 0, storeItemId: -1, upgradeLootName: "", expiryTime: -1, tags: "",
  displayCategories: "CHEST", rentalSeconds: 0, rentalGames: 0}'
request GET /tav-loot/v1/player-display-categories
expect_body "their categories in the order of the shelves" \
  '["BOOST","CURRENCY","MATERIAL","TOURNAMENTLOGO","CHEST","CHAMPION","SKIN","EMOTE","WARDSKIN","SUMMONERICON"]'
request GET /tav-loot/v1/recipes/configuration
expect_body "the first read of a setting asks the platform and returns what is known so far" \
  '{"enabled": false, "lootItemsUsingBreakoutRecipeMenu": [], "alwaysShowLootIds": []}'
events
expect_changes "the platform's response comes as events" \
  "Update v1/recipes/configuration" "Update v1/currency-configuration"
request GET /tav-loot/v1/recipes/configuration
expect_body "the recipe menu is known now" '{"enabled": true, "lootItemsUsingBreakoutRecipeMenu": ["CHEST_festival"],
  "alwaysShowLootIds": ["MATERIAL_key", "CURRENCY_champion", "CURRENCY_cosmetic"]}'
request GET /tav-loot/v1/currency-configuration
expect_body "so are the currencies" '{"currenciesUsingCapWallets": ["CURRENCY_moonstone"]}'
request GET /tav-loot/v1/new-player-check-done
expect_body "the new player's chest was asked for at sign-in" true
request POST /tav-loot/v1/new-player-check-done/true
expect_body "saying so again asks nothing" '"NOT_DONE"'

title "MessagePack instead of JSON"
request_packed /tav-loot/v1/currency-configuration
expect_packed "a response, where it is preferred" '\x81\xb9currenciesUsingCapWallets\x91\xb2CURRENCY_moonstone'

title "What goes wrong says why"
settle
craft=/tav-loot/v1/recipes/CHEST_lantern_OPEN/craft
request POST /tav-loot/v1/recipes/CHEST_new_player_OPEN/craft '["CHEST_harbour"]'
expect_problem "a chest does not open with another one" 500 "Internal Server Error" \
  "Unexpected status in ProcessPlayerLootUpdateResponse: INVALID_INGREDIENTS"
request POST "$craft" '{"playerLootList":"CHEST_lantern"}'
expect_problem "a body of the wrong shape is refused" 400 "Bad Request" \
  "Couldn't assign value to 'playerLootList' of type vector because the input not a collection."
request POST "$craft" '["CHEST_lantern"'
expect_problem "so is broken JSON" 400 "Bad Request" \
  "Couldn't deserialize JSON value for parameter 'playerLootList' of 'CraftRecipe': Missing a comma or ']' after an array element."
request POST "$craft" $'\x91\xadCHEST_lantern\xc3' application/x-msgpack
expect_problem "and MessagePack with something after it" 400 "Bad Request" "Extra MessgePack data found in body"
request POST "$craft" CHEST_lantern text/plain
expect_problem "and a body of plain text" 400 "Bad Request" "Unsupported body content type"
request POST "$craft?repeat=often" '["CHEST_lantern"]'
expect_problem "a number must be one" 400 "Bad Request" "Value often for 'repeat' of type int32 is in an incorrect format"
request POST "$craft?times=2" '["CHEST_lantern"]'
expect_problem "an argument must be known" 400 "Bad Request" "Unknown argument 'times' for 'CraftRecipe'."
request GET /tav-loot/v1/nothing-here
expect_problem "an unknown route is not found" 404 "Not Found" "Not found"
request PUT /_host/configuration/PxhEnabled false
settle
request POST "$craft" '["CHEST_lantern"]'
expect_problem "nothing is crafted while loot is disabled" 500 "Internal Server Error" "Loot disabled."
request POST "$craft" $'\x91\xadCHEST_lantern' application/x-msgpack
expect_problem "in any format of the body" 500 "Internal Server Error" "Loot disabled."
request PUT /_host/configuration/PxhEnabled true
events
expect_events "all that changed was the switch, twice" \
  'map(select(.uri | endswith("/context-menu") | not) | [.eventType, .uri, .data]) ==
     [["Update", "/tav-loot/v1/enabled", false], ["Update", "/tav-loot/v1/enabled", true]]'
expect_events "and the menus with it" \
  'map(select(.uri == "/tav-loot/v1/player-loot/CHAMPION_TOKEN_star-11/context-menu") | .data | map(.enabled)) ==
     [[false, false], [true, true]]'

title "A reader that was away gets what it missed"
seen=$(sed -n 's/^id: //p' "$work/events" | head -n 50 | tail -n 1)
sed -n '/^id: '"$seen"'$/,$p' "$work/events" | grep -E '^(id|data): ' | tail -n +3 >"$work/live"
printf '  > GET /_host/events  (Last-Event-ID: %s)\n' "$seen"
curl -sN -m 1 -H "Last-Event-ID: $seen" "$url/_host/events" | grep -E '^(id|data): ' >"$work/resumed" || true
printf '  < %s events\n' "$(grep -c '^id: ' "$work/resumed")"
if [ -s "$work/live" ] && cmp -s "$work/live" "$work/resumed"; then
  passed "each one that came after number $seen, as it went out live"
else
  failed "the stream after number $seen differs from what went out live"
fi
