// The item types published below "/tav-loot/". Member names are wire names; the order of the fields
// on the wire is the order of registration, which is the order of declaration.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/stable_hash.h"
#include "loot/wire/loot_enums.h"

namespace Kest {
class TypeRegistry;
}

namespace Kest::Client::Loot::Api {

// One item of the player's loot. `type` and `rarity` are the service's own strings.
struct PlayerLoot {
  std::string lootName;
  std::string lootId;
  std::string refId;
  std::string localizedName;
  std::string localizedDescription;
  std::string itemDesc;
  std::string displayCategories;
  std::string rarity;
  std::string tags;
  std::string type;
  std::string asset;
  std::string tilePath;
  std::string splashPath;
  std::string shadowPath;
  std::string upgradeLootName;
  std::string upgradeEssenceName;
  std::string disenchantLootName;
  ItemOwnershipStatus itemStatus = ItemOwnershipStatus::kNone;
  ItemOwnershipStatus parentItemStatus = ItemOwnershipStatus::kNone;
  RedeemableStatus redeemableStatus = RedeemableStatus::kUnknown;
  int32_t count = 0;
  int32_t rentalGames = 0;
  int32_t storeItemId = 0;
  int32_t parentStoreItemId = 0;
  int32_t value = 0;
  int32_t upgradeEssenceValue = 0;
  int32_t disenchantValue = 0;
  int64_t expiryTime = 0;     // as the service counts it
  int64_t rentalSeconds = 0;  // length of the rental
  bool isNew = false;
  bool isRental = false;

  friend bool operator==(const PlayerLoot&, const PlayerLoot&) = default;
};

// Items are immutable once stored, so that the store and what was published share them.
using PlayerLootPointer = std::shared_ptr<const PlayerLoot>;
using PlayerLootItems = std::unordered_map<std::string, PlayerLootPointer, StableHash>;

// How many of a special chest the player holds, and whether the player has seen that number.
struct PlayerLootNotification {
  std::string id;
  int32_t count = 0;
  bool acknowledged = false;
};

// The inventory by loot id. `version` grows by one with each publication of a difference.
struct PlayerLootMap {
  int64_t version = 0;
  PlayerLootItems playerLoot;
};

struct PlayerLootDelta {
  int32_t deltaCount = 0;
  PlayerLoot playerLoot;
};

// The result of a craft or redeem.
struct PlayerLootUpdate {
  std::vector<PlayerLootDelta> added;
  std::vector<PlayerLootDelta> removed;
  std::vector<PlayerLootDelta> redeemed;
};

// One entry of an item's context menu.
struct ContextMenu {
  std::string name;
  std::string actionType;
  std::string recipeDescription;
  std::string recipeContextMenuAction;
  bool enabled = false;
  std::string essenceType;
  int32_t essenceQuantity = 0;
  std::string requiredTokens;
  std::string requiredOthers;
  std::string requiredOthersName;
  int32_t requiredOthersCount = 0;

  friend bool operator==(const ContextMenu&, const ContextMenu&) = default;
};

// A grant after a game. `msgId` is empty for a grant from the login data packet.
struct LootGrantNotification {
  int64_t id = 0;
  uint64_t gameId = 0;
  uint64_t playerId = 0;
  int32_t championId = 0;
  std::string playerGrade;
  std::string lootName;
  std::string messageKey;
  std::string msgId;
  uint64_t accountId = 0;
};

// A loot definition as the front end sees it.
struct LootItem {
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

// The registration comes in two runs, because the recipe types come between them on the wire.
// REQUIRES: RegisterLootEnums has run.
void RegisterInventoryResources(TypeRegistry& registry);
// REQUIRES: RegisterInventoryResources has run.
void RegisterLootChangeResources(TypeRegistry& registry);

}  // namespace Kest::Client::Loot::Api
