#include "loot/model/player_loot_assembly.h"

#include "log/logger.h"
#include "loot/model/loot_constants.h"
#include "loot/model/loot_id.h"

namespace Kest::Client::Loot {
namespace {

void CopyDefinition(const SVDS::LootItemClientDTO& definition, Api::PlayerLoot* item) {
  item->asset = definition.asset;
  item->displayCategories = definition.displayCategories;
  item->rarity = definition.rarity;
  item->rentalGames = definition.rentalGames;
  item->rentalSeconds = definition.rentalSeconds;
  item->storeItemId = definition.storeItemId;
  item->tags = definition.tags;
  item->type = definition.type;
  item->upgradeLootName = definition.upgradeLootName;
  item->value = definition.value;
  item->isRental = IsRentalType(definition.type);
}

void ApplyRecipes(const RecipeIndex& recipes, Api::PlayerLoot* item) {
  const auto disenchant = recipes.FindDisenchant(item->lootName, item->lootId);
  if (disenchant && disenchant->quantity > item->disenchantValue) {
    item->disenchantLootName = disenchant->lootName;
    item->disenchantValue = disenchant->quantity;
  }
  if (const auto upgrade = recipes.FindUpgrade(item->lootName, item->lootId)) {
    item->upgradeEssenceName = upgrade->currencyId;
    item->upgradeEssenceValue = upgrade->quantity;
  }
}

}  // namespace

void PlayerLootAssembly::Create(const RecipeIndex& recipes, const SVDS::PlayerLootDTO& record,
                                const SVDS::LootItemClientDTO& definition,
                                Api::PlayerLoot* item) const {
  item->lootName = definition.lootName;
  item->refId = record.refId;
  MakeLootId(item->lootName, item->refId, &item->lootId);
  item->count = record.count;
  item->expiryTime = record.expiryTime;
  CopyDefinition(definition, item);
  LogOkay("Loot::CreatePlayerLoot %s : Getting recipes", item->lootName.c_str());
  ApplyRecipes(recipes, item);
  LogOkay("Loot::CreatePlayerLoot %s : Updating platform data", item->lootName.c_str());
  collectionStatus_.Apply(item);
  if (const auto* described = gameData_.FindLootItem(item->lootId)) {
    item->localizedName = described->name;
    item->localizedDescription = described->description;
  }
}

}  // namespace Kest::Client::Loot
