#include "host/world/loot/craft.h"

#include "host/world/input/field_reader.h"
#include "host/world/loot/ingredients.h"
#include "host/world/loot/outputs.h"

namespace Kest::Host {
namespace {

constexpr int64_t kMaxRepeat = 1000;

struct CraftOrder {
  std::string recipeName;
  std::vector<LootKey> items;
  int64_t repeat = 1;
};

CraftOrder ReadOrder(FieldReader& fields) {
  CraftOrder order;
  order.recipeName = fields.String("recipeName");
  order.repeat = fields.IntegerOr("repeat", 1, 1, kMaxRepeat);
  for (const Json& value : fields.ListOr("lootNameRefIds")) {
    FieldReader item(value, fields);
    order.items.push_back({item.String("lootName"), item.StringOr("refId", "")});
  }
  return order;
}

std::string FirstRefId(const std::vector<LootKey>& items) {
  for (const LootKey& item : items) {
    if (!item.refId.empty()) return item.refId;
  }
  return "";
}

}  // namespace

Transaction Craft(const WorldData& data, const Document& request, Inventory& inventory,
                  const PlatformCollections& collections, PreparedResults& prepared,
                  SeededRandom& random) {
  FieldReader fields(request);
  const CraftOrder order = ReadOrder(fields);
  if (!fields.ok()) return Refused("INVALID_REQUEST", fields.failure().text);

  const PlatformRecipe* recipe = data.FindRecipe(order.recipeName);
  if (recipe == nullptr) return Refused("INVALID_RECIPE", "no recipe " + order.recipeName);

  const auto taken = TakeIngredients(*recipe, order.items, order.repeat);
  if (!taken) return Refused("INVALID_INGREDIENTS", taken.GetFailure().text);
  for (const auto& [key, count] : taken.GetValue()) {
    if (inventory.Count(key) >= count) continue;
    return Refused("MISSING_INGREDIENTS", "needs " + std::to_string(count) + " of " + key.LootId() +
                                              ", has " + std::to_string(inventory.Count(key)));
  }

  Transaction transaction;
  transaction.removed = taken.GetValue();
  const CountsByKey* chosen = prepared.Next(order.recipeName);
  transaction.added = chosen != nullptr ? *chosen
                                        : RollOutputs(data, *recipe, order.repeat, inventory,
                                                      collections, FirstRefId(order.items), random);
  if (!inventory.CanApply(transaction.removed, transaction.added)) {
    return Refused("INVENTORY_FULL", "no capacity for the outputs of " + order.recipeName);
  }
  ApplyTransaction(transaction, data, inventory);
  prepared.Use(order.recipeName);
  return transaction;
}

}  // namespace Kest::Host
