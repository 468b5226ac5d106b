#include "loot/wire/loot_resources.h"

#include "binding/convert/define_struct.h"

namespace Kest::Client::Loot::Api {

void RegisterInventoryResources(TypeRegistry& registry) {
  DefineStruct<PlayerLoot>(registry, "PlayerLoot", kApiNamespace)
      .Fields<&PlayerLoot::lootName, &PlayerLoot::lootId, &PlayerLoot::refId,
              &PlayerLoot::localizedName, &PlayerLoot::localizedDescription, &PlayerLoot::itemDesc,
              &PlayerLoot::displayCategories, &PlayerLoot::rarity, &PlayerLoot::tags,
              &PlayerLoot::type, &PlayerLoot::asset, &PlayerLoot::tilePath, &PlayerLoot::splashPath,
              &PlayerLoot::shadowPath, &PlayerLoot::upgradeLootName,
              &PlayerLoot::upgradeEssenceName, &PlayerLoot::disenchantLootName,
              &PlayerLoot::itemStatus, &PlayerLoot::parentItemStatus, &PlayerLoot::redeemableStatus,
              &PlayerLoot::count, &PlayerLoot::rentalGames, &PlayerLoot::storeItemId,
              &PlayerLoot::parentStoreItemId, &PlayerLoot::value, &PlayerLoot::upgradeEssenceValue,
              &PlayerLoot::disenchantValue, &PlayerLoot::expiryTime, &PlayerLoot::rentalSeconds,
              &PlayerLoot::isNew, &PlayerLoot::isRental>();
  DefineStruct<PlayerLootNotification>(registry, "PlayerLootNotification", kApiNamespace)
      .Fields<&PlayerLootNotification::id, &PlayerLootNotification::count,
              &PlayerLootNotification::acknowledged>();
  DefineStruct<PlayerLootMap>(registry, "PlayerLootMap", kApiNamespace)
      .Fields<&PlayerLootMap::version, &PlayerLootMap::playerLoot>();
}

void RegisterLootChangeResources(TypeRegistry& registry) {
  DefineStruct<PlayerLootDelta>(registry, "PlayerLootDelta", kApiNamespace)
      .Fields<&PlayerLootDelta::deltaCount, &PlayerLootDelta::playerLoot>();
  DefineStruct<PlayerLootUpdate>(registry, "PlayerLootUpdate", kApiNamespace)
      .Fields<&PlayerLootUpdate::added, &PlayerLootUpdate::removed, &PlayerLootUpdate::redeemed>();
  DefineStruct<ContextMenu>(registry, "ContextMenu", kApiNamespace)
      .Fields<&ContextMenu::name, &ContextMenu::actionType, &ContextMenu::recipeDescription,
              &ContextMenu::recipeContextMenuAction, &ContextMenu::enabled,
              &ContextMenu::essenceType, &ContextMenu::essenceQuantity,
              &ContextMenu::requiredTokens, &ContextMenu::requiredOthers,
              &ContextMenu::requiredOthersName, &ContextMenu::requiredOthersCount>();
  DefineStruct<LootGrantNotification>(registry, "LootGrantNotification", kApiNamespace)
      .Fields<&LootGrantNotification::id, &LootGrantNotification::gameId,
              &LootGrantNotification::playerId, &LootGrantNotification::championId,
              &LootGrantNotification::playerGrade, &LootGrantNotification::lootName,
              &LootGrantNotification::messageKey, &LootGrantNotification::msgId,
              &LootGrantNotification::accountId>();
  DefineStruct<LootItem>(registry, "LootItem", kApiNamespace)
      .Fields<&LootItem::lootName, &LootItem::asset, &LootItem::type, &LootItem::rarity,
              &LootItem::value, &LootItem::storeItemId, &LootItem::upgradeLootName,
              &LootItem::expiryTime, &LootItem::tags, &LootItem::displayCategories,
              &LootItem::rentalSeconds, &LootItem::rentalGames>();
}

}  // namespace Kest::Client::Loot::Api
