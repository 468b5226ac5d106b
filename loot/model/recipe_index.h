// RecipeIndex finds the recipes that take an item without a walk over all recipes. It is built once
// per change of the definitions, in time proportional to their size, and never changes: slots with
// the same query share one list of loot names. A recipe takes an item when one of its slots lists
// the item's loot name or its loot id. A slot lists the names that the query results hold under its
// query, else the query itself when it names a definition, else none.
//
// Threads:  any; it is constant.
// Lifetime: it points into the recipes it was built from, and results point into it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "loot/model/keyed_list.h"
#include "loot/wire/loot_dtos.h"

namespace Kest::Client::Loot {

using LootItemDefinitions = KeyedList<SVDS::LootItemClientDTO, &SVDS::LootItemClientDTO::lootName>;

// A slot with its query and expression evaluated.
struct IndexedSlot {
  const SVDS::LootSvdsRecipeSlotClientDTO* slot = nullptr;
  const std::vector<std::string>* lootNames = nullptr;  // never null; in the service's order
  int32_t quantity = 0;                                 // 0 when its expression is unreadable
};

struct IndexedRecipe {
  const SVDS::LootSvdsRecipeClientDTO* recipe = nullptr;
  uint32_t place = 0;                     // in the definitions' order
  std::vector<IndexedSlot> slots;         // by rising slot number
  std::vector<int32_t> outputQuantities;  // one per output of the recipe, in its order
};

// What an item turns into: the first output of a "DISENCHANT" recipe.
struct DisenchantOffer {
  std::string_view lootName;
  int32_t quantity = 0;
  uint32_t recipe = 0;  // place in the definitions
};

// What an upgrade of an item costs: a currency slot of an "UPGRADE" recipe.
struct UpgradeOffer {
  std::string_view currencyId;
  int32_t quantity = 0;
  uint32_t recipe = 0;
};

class RecipeIndex {
 public:
  // `recipes` outlive the index. A quantity that cannot be read is 0 and logs "Loot recipe %s has
  // an unreadable quantity: %s" as a warning.
  RecipeIndex(const std::vector<SVDS::LootSvdsRecipeClientDTO>& recipes,
              const BindingProperty& queryToLootNames, const LootItemDefinitions& items);
  RecipeIndex(const RecipeIndex&) = delete;
  RecipeIndex& operator=(const RecipeIndex&) = delete;

  // Every recipe, in the definitions' order.
  const std::vector<IndexedRecipe>& recipes() const { return recipes_; }

  // The recipes that take the item in the slot of the lowest number. In the definitions' order,
  // each once.
  std::vector<const IndexedRecipe*> RecipesTakingFirst(std::string_view lootName,
                                                       std::string_view lootId) const;

  // The places of all recipes that take the item in any slot; each may be there more than once.
  std::vector<uint32_t> RecipesTaking(std::string_view lootName, std::string_view lootId) const;

  // Of the "DISENCHANT" recipes that take the item: the largest first output, of equal ones the
  // first recipe's.
  std::optional<DisenchantOffer> FindDisenchant(std::string_view lootName,
                                                std::string_view lootId) const;
  // Of the "UPGRADE" recipes that take the item: the last slot, of the last recipe with one, that
  // lists an essence; of two essences in one slot the last.
  std::optional<UpgradeOffer> FindUpgrade(std::string_view lootName, std::string_view lootId) const;

 private:
  // What the slots of one query have in common.
  struct Query {
    std::vector<std::string> lootNames;
    std::string_view lastCurrencyId;     // empty when it lists none
    std::vector<uint32_t> firstRecipes;  // whose first slot has it; rising
    std::vector<uint32_t> recipes;       // with any slot that has it; rising
    // Of the recipes with any slot that has it.
    std::optional<DisenchantOffer> disenchant;
    std::optional<UpgradeOffer> upgrade;
  };

  Query& GetOrAddQuery(std::string_view text, const BindingProperty& queryToLootNames,
                       const LootItemDefinitions& items);
  void EnterRecipe(const IndexedRecipe& indexed);
  template <class Visit>
  void ForEachQueryListing(std::string_view lootName, std::string_view lootId, Visit visit) const;

  std::vector<IndexedRecipe> recipes_;
  std::unordered_map<std::string_view, Query> queries_;  // by query; nodes do not move
  std::unordered_map<std::string_view, std::vector<const Query*>> queriesByLootName_;
};

}  // namespace Kest::Client::Loot
