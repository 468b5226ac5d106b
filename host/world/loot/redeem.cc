#include "host/world/loot/redeem.h"

#include "host/world/input/field_reader.h"

namespace Kest::Host {
namespace {

constexpr std::string_view kBoostType = "BOOST";

bool IsRental(std::string_view type) {
  return type.ends_with("_RENTAL");
}

// Why the thing cannot be had this way, as a status word; empty when it can.
std::string_view Obstacle(Collection collection, const LootDefinition& definition,
                          const PlatformCollections& collections) {
  if (definition.storeItemId == -1) return "NOT_REDEEMABLE";
  const Collectible* thing = collections.Find(collection, definition.storeItemId);
  if (thing != nullptr && thing->ownership.owned) return "ALREADY_OWNED";
  if (thing != nullptr && thing->ownership.rented && IsRental(definition.type)) {
    return "ALREADY_RENTED";
  }
  if (collection != Collection::kSkins) return "";
  const Collectible* champion =
      collections.Find(Collection::kChampions, ChampionOfSkin(definition.storeItemId));
  return champion != nullptr && champion->ownership.owned ? "" : "CHAMPION_NOT_OWNED";
}

void Acquire(Collection collection, const LootDefinition& definition,
             PlatformCollections& collections) {
  Ownership& ownership = collections[collection][definition.storeItemId].ownership;
  (IsRental(definition.type) ? ownership.rented : ownership.owned) = true;
}

}  // namespace

Transaction Redeem(const WorldData& data, const Document& request, Inventory& inventory,
                   PlatformCollections& collections) {
  FieldReader fields(request);
  const LootKey key{fields.String("lootName"), ""};
  if (!fields.ok()) return Refused("INVALID_REQUEST", fields.failure().text);
  if (inventory.Count(key) == 0) return Refused("MISSING_LOOT", "has no " + key.lootName);

  const LootDefinition& definition = *data.FindDefinition(key.lootName);
  const auto collection = CollectionOfLootType(definition.type);
  if (!collection && definition.type != kBoostType) {
    return Refused("NOT_REDEEMABLE", "loot of type " + definition.type + " is not redeemed");
  }
  if (collection) {
    const std::string_view obstacle = Obstacle(*collection, definition, collections);
    if (!obstacle.empty()) return Refused(std::string(obstacle), key.lootName);
    Acquire(*collection, definition, collections);
  }
  Transaction transaction;
  transaction.removed[key] = 1;
  transaction.redeemed.push_back(key.lootName);
  ApplyTransaction(transaction, data, inventory);
  return transaction;
}

}  // namespace Kest::Host
