# What an item can be used for: recipe views and context menus, and how they follow the inventory.
# Sourced by script/demo after the main job.

forge='{"name": "MATERIAL_key_FORGE", "actionType": "FORGE", "recipeDescription": "Three fragments make a Brass Key.",
  "recipeContextMenuAction": "Forge", "enabled": true, "essenceType": "", "essenceQuantity": 0, "requiredTokens": "",
  "requiredOthers": "", "requiredOthersName": "", "requiredOthersCount": 0}'

title "An item's context menu follows a craft"
request GET /tav-loot/v1/recipes/initial-item/MATERIAL_key_fragment
expect_body "fragments can be forged into a key" '[{"recipeName": "MATERIAL_key_FORGE", "type": "FORGE",
  "description": "Three fragments make a Brass Key.", "contextMenuText": "Forge", "requirementText": "Needs 3 Key Fragments",
  "imagePath": "/tav-game-data/assets/art/recipes/forge.png", "displayCategories": "MATERIAL", "crafterName": "forge",
  "slots": [{"slotNumber": 0, "lootIds": ["MATERIAL_key_fragment"], "tags": "MATERIAL_key_fragment", "quantity": 3}],
  "outputs": [{"lootName": "MATERIAL_key", "quantity": 1}],
  "metadata": {"guaranteedDescriptions": [], "bonusDescriptions": [], "tooltipsDisabled": false}}]'
recipes=$body
request POST /tav-loot/v1/recipes/initial-item/MATERIAL_key_fragment
expect_body "POST returns the same" "$recipes"
request GET /tav-loot/v1/player-loot/MATERIAL_key_fragment/context-menu
expect_body "seven fragments are enough" "[$forge]"
printf '\x91\xda\x00\x15MATERIAL_key_fragment' >"$work/list" # the list in MessagePack
request POST '/tav-loot/v1/recipes/MATERIAL_key_FORGE/craft?repeat=2' "@$work/list" application/x-msgpack
expect "six of them become two keys" 200 \
  'map_values(map([.deltaCount, .playerLoot.lootId, .playerLoot.count])) == {
     added: [[2, "MATERIAL_key", 7]], removed: [[6, "MATERIAL_key_fragment", 1]], redeemed: []}'
events
expect_changes "the menu changed with the items; the recipes did not" \
  "Update v1/player-loot/MATERIAL_key" "Update v1/player-loot/MATERIAL_key_fragment" \
  "Update v1/player-loot-map" "Update v2/player-loot-map" \
  "Update v1/player-loot/MATERIAL_key_fragment/context-menu"
two_missing=$(jq -c '[.enabled = false | .requiredOthers = "MATERIAL_key_fragment" | .requiredOthersName = "Key Fragment"
  | .requiredOthersCount = 2]' <<<"$forge")
expect_event "one fragment is not enough" v1/player-loot/MATERIAL_key_fragment/context-menu "$two_missing"
request POST /tav-loot/v1/player-loot/MATERIAL_key_fragment/context-menu
expect_body "and the menu says how many are missing" "$two_missing"
request GET /tav-loot/v1/player-loot/CHAMPION_TOKEN_star-11/context-menu
expect "no tokens are missing; the menu names what else an upgrade takes" 200 \
  'map([.name, .enabled, .essenceType, .essenceQuantity, .requiredTokens, .requiredOthersName, .requiredOthersCount]) == [
     ["CHAMPION_TOKEN_SHARD_UPGRADE", true, "", 0, "0", "CHAMPION_RENTAL_11", 0],
     ["CHAMPION_TOKEN_ESSENCE_UPGRADE", true, "CURRENCY_champion", 450, "0", "", 0]]'
request GET /tav-loot/v1/player-loot/CHEST_unknown/context-menu
expect_body "an unknown item has an empty menu" '[]'
