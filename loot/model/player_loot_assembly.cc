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

void TraceRecord(const Api::PlayerLoot& item, DecisionTrace* trace) {
  trace->Add("record", "The platform's inventory holds it.",
             {{"lootName", item.lootName},
              {"refId", item.refId},
              {"count", item.count},
              {"expiryTime", item.expiryTime}});
  trace->Add("definition", "The platform defines its loot name.",
             {{"type", item.type},
              {"isRental", item.isRental},
              {"storeItemId", item.storeItemId},
              {"asset", item.asset},
              {"displayCategories", item.displayCategories}});
}

void TraceRecipes(const std::optional<DisenchantOffer>& disenchant,
                  const std::optional<UpgradeOffer>& upgrade, const Api::PlayerLoot& item,
                  DecisionTrace* trace) {
  trace->Add(
      "disenchant", disenchant ? "A recipe disenchants it." : "No recipe disenchants it.",
      {{"disenchantLootName", item.disenchantLootName}, {"disenchantValue", item.disenchantValue}});
  trace->Add("upgrade", upgrade ? "A recipe upgrades it for an essence." : "No recipe upgrades it.",
             {{"upgradeEssenceName", item.upgradeEssenceName},
              {"upgradeEssenceValue", item.upgradeEssenceValue}});
}

void ApplyRecipes(const RecipeIndex& recipes, Api::PlayerLoot* item, DecisionTrace* trace) {
  const auto disenchant = recipes.FindDisenchant(item->lootName, item->lootId);
  if (disenchant && disenchant->quantity > item->disenchantValue) {
    item->disenchantLootName = disenchant->lootName;
    item->disenchantValue = disenchant->quantity;
  }
  const auto upgrade = recipes.FindUpgrade(item->lootName, item->lootId);
  if (upgrade) {
    item->upgradeEssenceName = upgrade->currencyId;
    item->upgradeEssenceValue = upgrade->quantity;
  }
  if (trace != nullptr) TraceRecipes(disenchant, upgrade, *item, trace);
}

}  // namespace

void PlayerLootAssembly::Create(const RecipeIndex& recipes, const SVDS::PlayerLootDTO& record,
                                const SVDS::LootItemClientDTO& definition, Api::PlayerLoot* item,
                                DecisionTrace* trace) const {
  item->lootName = definition.lootName;
  item->refId = record.refId;
  MakeLootId(item->lootName, item->refId, &item->lootId);
  item->count = record.count;
  item->expiryTime = record.expiryTime;
  CopyDefinition(definition, item);
  if (trace != nullptr) {
    TraceRecord(*item, trace);
  } else {
    LogOkay("Loot::CreatePlayerLoot %s : Getting recipes", item->lootName.c_str());
  }
  ApplyRecipes(recipes, item, trace);
  if (trace == nullptr) {
    LogOkay("Loot::CreatePlayerLoot %s : Updating platform data", item->lootName.c_str());
  }
  collectionStatus_.Apply(item, trace);
  const auto* const described = gameData_.FindLootItem(item->lootId);
  if (described != nullptr) {
    item->localizedName = described->name;
    item->localizedDescription = described->description;
  }
  if (trace == nullptr) return;
  trace->Add("texts",
             described != nullptr ? "The game data describes it." : "The game data has no texts.",
             {{"localizedName", item->localizedName},
              {"localizedDescription", item->localizedDescription}});
}

}  // namespace Kest::Client::Loot
