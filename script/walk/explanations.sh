# Why things are as they are, in the plugin's own words.
# Sourced by script/demo after the menus.

title "Why can't I redeem this?"
request GET /_host/explain/item/SKIN_RENTAL_13001
expect "its champion is not owned, and the steps say what was looked at" 200 \
  '.redeemableStatus == "CHAMPION_NOT_OWNED" and .differences == []
   and (.reason | startswith("The player does not own its champion"))
   and ([.steps[].step] | index("champion") < index("skin")) and (.redeem | .isOffered or .isEnabled | not)'
request GET '/_host/explain/recipe/MATERIAL_key_FORGE?items=MATERIAL_key_fragment,CHEST_none'
expect "two fragments are missing, and a chest that is not there helps nothing" 200 \
  '(.canCraft | not) and (.ingredients | map([.quantity, .missing, .fits[0].lootId])) == [[3, 2, "MATERIAL_key_fragment"]]
   and .notHeld == ["CHEST_none"] and .fitNoSlot == []'
request GET /_host/explain/item/CHEST_none
expect "there is no such item, and why" 200 '.isHeld == false and .reason == "There is no definition of its loot name."'
request GET /_host/explain/ready
expect "every source has responded" 200 '.ready and .session.isConnected and ([.sources[].hasResponded] | all)'
request GET /_host/explain/unknown
expect "a question that is not known" 404 '.detail | length > 0'
