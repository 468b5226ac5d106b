// The recipe types and the two configurations published below "/tav-loot/v1/". Member names are
// wire names.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace Kest {
class TypeRegistry;
}

namespace Kest::Client::Loot::Api {

struct RecipeSlot {
  int32_t slotNumber = 0;
  std::vector<std::string> lootIds;
  std::string tags;
  int32_t quantity = 0;

  friend bool operator==(const RecipeSlot&, const RecipeSlot&) = default;
};

struct RecipeMenuConfig {
  bool enabled = false;
  std::vector<std::string> lootItemsUsingBreakoutRecipeMenu;
  std::vector<std::string> alwaysShowLootIds;

  friend bool operator==(const RecipeMenuConfig&, const RecipeMenuConfig&) = default;
};

struct CurrencyConfiguration {
  std::vector<std::string> currenciesUsingCapWallets;

  friend bool operator==(const CurrencyConfiguration&, const CurrencyConfiguration&) = default;
};

struct RecipeOutput {
  std::string lootName;
  int32_t quantity = 0;

  friend bool operator==(const RecipeOutput&, const RecipeOutput&) = default;
};

struct LootDescription {
  std::string lootName;
  std::vector<std::string> childLootTableNames;
  std::map<std::string, std::string> localizationMap;
  std::map<std::string, std::string> localizationLongDescriptionMap;

  friend bool operator==(const LootDescription&, const LootDescription&) = default;
};

struct RecipeMetadata {
  std::vector<LootDescription> guaranteedDescriptions;
  std::vector<LootDescription> bonusDescriptions;
  bool tooltipsDisabled = false;

  friend bool operator==(const RecipeMetadata&, const RecipeMetadata&) = default;
};

struct Recipe {
  std::string recipeName;
  std::string type;
  std::string description;
  std::string contextMenuText;
  std::string requirementText;
  std::string imagePath;
  std::string displayCategories;
  std::string crafterName;
  std::vector<RecipeSlot> slots;
  std::vector<RecipeOutput> outputs;
  RecipeMetadata metadata;

  friend bool operator==(const Recipe&, const Recipe&) = default;
};

// Registers the seven types above, in that order.
void RegisterRecipeResources(TypeRegistry& registry);

}  // namespace Kest::Client::Loot::Api
