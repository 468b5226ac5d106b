#include "loot/wire/loot_enums.h"

#include "binding/convert/define_struct.h"

namespace Kest::Client::Loot::Api {

void RegisterLootEnums(TypeRegistry& registry) {
  DefineEnum<LootRarity>(registry, "LootRarity", kApiNamespace)
      .Enumerator("Default", LootRarity::kDefault)
      .Enumerator("Epic", LootRarity::kEpic)
      .Enumerator("Legendary", LootRarity::kLegendary)
      .Enumerator("Mythic", LootRarity::kMythic)
      .Enumerator("Ultimate", LootRarity::kUltimate);
  DefineEnum<LootType>(registry, "LootType", kApiNamespace)
      .Enumerator("Chest", LootType::kChest)
      .Enumerator("Currency", LootType::kCurrency)
      .Enumerator("Material", LootType::kMaterial)
      .Enumerator("Skin", LootType::kSkin)
      .Enumerator("Skin_Rental", LootType::kSkinRental);
  DefineEnum<ItemOwnershipStatus>(registry, "ItemOwnershipStatus", kApiNamespace)
      .Enumerator("NONE", ItemOwnershipStatus::kNone)
      .Enumerator("FREE", ItemOwnershipStatus::kFree)
      .Enumerator("RENTAL", ItemOwnershipStatus::kRental)
      .Enumerator("OWNED", ItemOwnershipStatus::kOwned);
  DefineEnum<InventoryOwnership>(registry, "InventoryOwnership", kApiNamespace)
      .Enumerator("OWNED", InventoryOwnership::kOwned)
      .Enumerator("RENTED", InventoryOwnership::kRented)
      .Enumerator("F2P", InventoryOwnership::kF2p);
  DefineEnum<RedeemableStatus>(registry, "RedeemableStatus", kApiNamespace)
      .Enumerator("UNKNOWN", RedeemableStatus::kUnknown)
      .Enumerator("REDEEMABLE", RedeemableStatus::kRedeemable)
      .Enumerator("REDEEMABLE_RENTAL", RedeemableStatus::kRedeemableRental)
      .Enumerator("NOT_REDEEMABLE", RedeemableStatus::kNotRedeemable)
      .Enumerator("NOT_REDEEMABLE_RENTAL", RedeemableStatus::kNotRedeemableRental)
      .Enumerator("ALREADY_OWNED", RedeemableStatus::kAlreadyOwned)
      .Enumerator("ALREADY_RENTED", RedeemableStatus::kAlreadyRented)
      .Enumerator("CHAMPION_NOT_OWNED", RedeemableStatus::kChampionNotOwned)
      .Enumerator("SKIN_NOT_OWNED", RedeemableStatus::kSkinNotOwned);
}

void RegisterLoginSessionStates(TypeRegistry& registry) {
  // The order is the login plugin's; the numbers do not follow it.
  DefineEnum<LoginSessionStates>(registry, "LoginSessionStates", kApiNamespace)
      .Enumerator("IN_PROGRESS", LoginSessionStates::kInProgress)
      .Enumerator("ERROR", LoginSessionStates::kError)
      .Enumerator("SUCCEEDED", LoginSessionStates::kSucceeded)
      .Enumerator("LOGGING_OUT", LoginSessionStates::kLoggingOut);
}

void RegisterGameflowPhase(TypeRegistry& registry) {
  DefineEnum<GameflowPhase>(registry, "GameflowPhase", kApiNamespace)
      .Enumerator("None", GameflowPhase::kNone)
      .Enumerator("Lobby", GameflowPhase::kLobby)
      .Enumerator("Matchmaking", GameflowPhase::kMatchmaking)
      .Enumerator("CheckedIntoTournament", GameflowPhase::kCheckedIntoTournament)
      .Enumerator("ReadyCheck", GameflowPhase::kReadyCheck)
      .Enumerator("ChampSelect", GameflowPhase::kChampSelect)
      .Enumerator("GameStart", GameflowPhase::kGameStart)
      .Enumerator("FailedToLaunch", GameflowPhase::kFailedToLaunch)
      .Enumerator("InProgress", GameflowPhase::kInProgress)
      .Enumerator("Reconnect", GameflowPhase::kReconnect)
      .Enumerator("WaitingForStats", GameflowPhase::kWaitingForStats)
      .Enumerator("PreEndOfGame", GameflowPhase::kPreEndOfGame)
      .Enumerator("EndOfGame", GameflowPhase::kEndOfGame)
      .Enumerator("TerminatedInError", GameflowPhase::kTerminatedInError);
}

}  // namespace Kest::Client::Loot::Api
