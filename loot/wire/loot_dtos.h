// What the loot and messaging services send and take. Member names are wire names. A DTO has a
// short name, under which it is registered, and the service's own dotted class name; the short
// names are not uniform and stay as they are.
#pragma once

#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "binding/tree/binding_property.h"

namespace Kest::Client::Loot::SVDS {

// The `lastUpdate` of a list that a response does not have: the service leaves out what it need not
// say.
inline constexpr int64_t kLeftOut = std::numeric_limits<int64_t>::min();

struct LootSvdsClientConfigurationDTO {
  std::vector<std::string> lootItemsUsingBreakoutRecipeMenu;
  std::vector<std::string> lootMaterialsToAlwaysRender;
  std::vector<std::string> currenciesUsingCapWallets;
};

struct LootSvdsRecipeOutputDTO {
  std::string lootName;
  std::string quantityExpression;  // see quantity_expression.h
  double probability = 0;
  bool allowDuplicates = false;
};

struct LootSvdsRecipeSlotClientDTO {
  int32_t slotNumber = 0;
  std::string query;
  std::string quantityExpression;
};

struct LootSvdsLootDescriptionDTO {
  std::string lootName;
  std::vector<std::string> childLootTableNames;
  std::map<std::string, std::string> localizationMap;
  std::map<std::string, std::string> localizationLongDescriptionMap;
};

struct LootSvdsRecipeMetadata {
  std::vector<LootSvdsLootDescriptionDTO> guaranteedDescriptions;
  std::vector<LootSvdsLootDescriptionDTO> bonusDescriptions;
  bool tooltipsDisabled = false;
};

struct LootSvdsRecipeClientDTO {
  std::string recipeName;
  std::string type;
  std::string displayCategories;
  std::string crafterName;
  std::vector<LootSvdsRecipeSlotClientDTO> slots;
  std::vector<LootSvdsRecipeOutputDTO> outputs;
  LootSvdsRecipeMetadata metadata;
};

struct LootSvdsRecipeListClientDTO {
  std::vector<LootSvdsRecipeClientDTO> recipes;
  int64_t lastUpdate = kLeftOut;  // the version the service compares with
};

struct LootItemClientDTO {
  std::string lootName;
  std::string asset;
  std::string type;
  std::string rarity;
  int32_t value = 0;
  int32_t storeItemId = 0;
  std::string upgradeLootName;
  int64_t expiryTime = 0;
  std::string tags;
  std::string displayCategories;
  int64_t rentalSeconds = 0;
  int32_t rentalGames = 0;
};

struct PlayerLootDTO {
  std::string lootName;
  std::string refId;
  int32_t count = 0;
  int64_t expiryTime = 0;
};

struct LootItemListClientDTO {
  std::vector<LootItemClientDTO> lootItems;
  int64_t lastUpdate = kLeftOut;
};

struct QueryResultDTO {
  BindingProperty queryToLootNames;  // query to a list of loot names, or to a single one
  int64_t lastUpdate = kLeftOut;
};

struct PlayerLootDefinitionsDTO {
  LootItemListClientDTO lootItemList;
  LootSvdsRecipeListClientDTO recipeList;
  QueryResultDTO queryResult;
  std::vector<PlayerLootDTO> playerLoot;
};

// `redeemed` holds bare loot names, unlike the other two lists.
struct PlayerLootResultDTO {
  std::string status;
  std::string details;
  std::vector<PlayerLootDTO> added;
  std::vector<PlayerLootDTO> removed;
  std::vector<std::string> redeemed;
};

struct RedeemLootTransactionDTO {
  std::string lootName;
};

struct LootNameRefId {
  std::string lootName;
  std::string refId;
};

struct CraftLootRefTransactionDTO {
  std::string recipeName;
  std::vector<LootNameRefId> lootNameRefIds;
  int32_t repeat = 0;
};

struct SimpleDialogMessage {
  uint64_t accountId = 0;
  std::string msgId;
  std::string type;
  BindingProperty params;  // any shape
};

struct LootSimpleDialogMessageResponse {
  uint64_t accountId = 0;
  std::string msgId;
  std::string command;
};

}  // namespace Kest::Client::Loot::SVDS
