#include "loot/wire/loot_resources.h"

#include "binding/convert/define_struct.h"

namespace Kest::Client::Loot::Api {

void RegisterInventoryResources(TypeRegistry& registry) {
  DefineStruct<PlayerLoot>(registry, "PlayerLoot", kApiNamespace)
      .Field<&PlayerLoot::lootName>("lootName")
      .Field<&PlayerLoot::lootId>("lootId")
      .Field<&PlayerLoot::refId>("refId")
      .Field<&PlayerLoot::localizedName>("localizedName")
      .Field<&PlayerLoot::localizedDescription>("localizedDescription")
      .Field<&PlayerLoot::itemDesc>("itemDesc")
      .Field<&PlayerLoot::displayCategories>("displayCategories")
      .Field<&PlayerLoot::rarity>("rarity")
      .Field<&PlayerLoot::tags>("tags")
      .Field<&PlayerLoot::type>("type")
      .Field<&PlayerLoot::asset>("asset")
      .Field<&PlayerLoot::tilePath>("tilePath")
      .Field<&PlayerLoot::splashPath>("splashPath")
      .Field<&PlayerLoot::shadowPath>("shadowPath")
      .Field<&PlayerLoot::upgradeLootName>("upgradeLootName")
      .Field<&PlayerLoot::upgradeEssenceName>("upgradeEssenceName")
      .Field<&PlayerLoot::disenchantLootName>("disenchantLootName")
      .Field<&PlayerLoot::itemStatus>("itemStatus")
      .Field<&PlayerLoot::parentItemStatus>("parentItemStatus")
      .Field<&PlayerLoot::redeemableStatus>("redeemableStatus")
      .Field<&PlayerLoot::count>("count")
      .Field<&PlayerLoot::rentalGames>("rentalGames")
      .Field<&PlayerLoot::storeItemId>("storeItemId")
      .Field<&PlayerLoot::parentStoreItemId>("parentStoreItemId")
      .Field<&PlayerLoot::value>("value")
      .Field<&PlayerLoot::upgradeEssenceValue>("upgradeEssenceValue")
      .Field<&PlayerLoot::disenchantValue>("disenchantValue")
      .Field<&PlayerLoot::expiryTime>("expiryTime")
      .Field<&PlayerLoot::rentalSeconds>("rentalSeconds")
      .Field<&PlayerLoot::isNew>("isNew")
      .Field<&PlayerLoot::isRental>("isRental");
  DefineStruct<PlayerLootNotification>(registry, "PlayerLootNotification", kApiNamespace)
      .Field<&PlayerLootNotification::id>("id")
      .Field<&PlayerLootNotification::count>("count")
      .Field<&PlayerLootNotification::acknowledged>("acknowledged");
  DefineStruct<PlayerLootMap>(registry, "PlayerLootMap", kApiNamespace)
      .Field<&PlayerLootMap::version>("version")
      .Field<&PlayerLootMap::playerLoot>("playerLoot");
}

void RegisterLootChangeResources(TypeRegistry& registry) {
  DefineStruct<PlayerLootDelta>(registry, "PlayerLootDelta", kApiNamespace)
      .Field<&PlayerLootDelta::deltaCount>("deltaCount")
      .Field<&PlayerLootDelta::playerLoot>("playerLoot");
  DefineStruct<PlayerLootUpdate>(registry, "PlayerLootUpdate", kApiNamespace)
      .Field<&PlayerLootUpdate::added>("added")
      .Field<&PlayerLootUpdate::removed>("removed")
      .Field<&PlayerLootUpdate::redeemed>("redeemed");
  DefineStruct<ContextMenu>(registry, "ContextMenu", kApiNamespace)
      .Field<&ContextMenu::name>("name")
      .Field<&ContextMenu::actionType>("actionType")
      .Field<&ContextMenu::recipeDescription>("recipeDescription")
      .Field<&ContextMenu::recipeContextMenuAction>("recipeContextMenuAction")
      .Field<&ContextMenu::enabled>("enabled")
      .Field<&ContextMenu::essenceType>("essenceType")
      .Field<&ContextMenu::essenceQuantity>("essenceQuantity")
      .Field<&ContextMenu::requiredTokens>("requiredTokens")
      .Field<&ContextMenu::requiredOthers>("requiredOthers")
      .Field<&ContextMenu::requiredOthersName>("requiredOthersName")
      .Field<&ContextMenu::requiredOthersCount>("requiredOthersCount");
  DefineStruct<LootGrantNotification>(registry, "LootGrantNotification", kApiNamespace)
      .Field<&LootGrantNotification::id>("id")
      .Field<&LootGrantNotification::gameId>("gameId")
      .Field<&LootGrantNotification::playerId>("playerId")
      .Field<&LootGrantNotification::championId>("championId")
      .Field<&LootGrantNotification::playerGrade>("playerGrade")
      .Field<&LootGrantNotification::lootName>("lootName")
      .Field<&LootGrantNotification::messageKey>("messageKey")
      .Field<&LootGrantNotification::msgId>("msgId")
      .Field<&LootGrantNotification::accountId>("accountId");
  DefineStruct<LootItem>(registry, "LootItem", kApiNamespace)
      .Field<&LootItem::lootName>("lootName")
      .Field<&LootItem::asset>("asset")
      .Field<&LootItem::type>("type")
      .Field<&LootItem::rarity>("rarity")
      .Field<&LootItem::value>("value")
      .Field<&LootItem::storeItemId>("storeItemId")
      .Field<&LootItem::upgradeLootName>("upgradeLootName")
      .Field<&LootItem::expiryTime>("expiryTime")
      .Field<&LootItem::tags>("tags")
      .Field<&LootItem::displayCategories>("displayCategories")
      .Field<&LootItem::rentalSeconds>("rentalSeconds")
      .Field<&LootItem::rentalGames>("rentalGames");
}

}  // namespace Kest::Client::Loot::Api
