// The registered enumerations. The enumerator names on the wire are those of RegisterLootEnums (and
// of the session and phase registrations), the numbers are fixed: never renumber.
#pragma once

#include <cstdint>

namespace Kest {
class TypeRegistry;
}

namespace Kest::Client::Loot::Api {

// The namespace under which the types of this directory, but the DTOs, are registered.
inline constexpr const char* kApiNamespace = "Kest::Client::Loot::Api";

// Rarities and types of the game-data file only; those of loot items are strings.
enum class LootRarity : int32_t { kDefault = 0, kEpic, kLegendary, kMythic, kUltimate };
enum class LootType : int32_t { kChest = 0, kCurrency, kMaterial, kSkin, kSkinRental };

// How the player owns what an item unlocks, as published.
enum class ItemOwnershipStatus : int32_t { kNone = 0, kFree = 1, kRental = 2, kOwned = 3 };

// The same as the emote inventory reports it. The numbers differ; never mix the two.
enum class InventoryOwnership : int32_t { kOwned = 0, kRented = 1, kF2p = 2 };

enum class RedeemableStatus : int32_t {
  kUnknown = 0,
  kRedeemable = 1,
  kRedeemableRental = 2,
  kNotRedeemable = 3,
  kNotRedeemableRental = 4,
  kAlreadyOwned = 5,
  kAlreadyRented = 6,
  kChampionNotOwned = 7,
  kSkinNotOwned = 8,
};

enum class LoginSessionStates : int32_t {
  kInProgress = 0,
  kSucceeded = 1,
  kLoggingOut = 2,
  kError = 3,
};

enum class GameflowPhase : int32_t {
  kNone = 0,
  kLobby = 1,
  kMatchmaking = 2,
  kCheckedIntoTournament = 3,
  kReadyCheck = 4,
  kChampSelect = 5,
  kGameStart = 6,
  kFailedToLaunch = 7,
  kInProgress = 8,
  kReconnect = 9,
  kWaitingForStats = 10,
  kPreEndOfGame = 11,
  kEndOfGame = 12,
  kTerminatedInError = 13,
};

// Registers the five enumerations of loot items, ahead of every structure that holds one.
void RegisterLootEnums(TypeRegistry& registry);

// Registered on their own, each right before the resource that holds it.
void RegisterLoginSessionStates(TypeRegistry& registry);
void RegisterGameflowPhase(TypeRegistry& registry);

}  // namespace Kest::Client::Loot::Api
