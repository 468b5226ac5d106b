// The types in which other plugins' resources and the game-data file are read. Of the larger
// resources only the members used here are declared. Member names are wire names.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "loot/wire/loot_enums.h"

namespace Kest {
class TypeRegistry;
}

namespace Kest::Client::Loot::Api {

struct CollectionsRental {
  bool rented = false;

  friend bool operator==(const CollectionsRental&, const CollectionsRental&) = default;
};

struct CollectionsOwnership {
  bool freeToPlayReward = false;
  bool owned = false;
  CollectionsRental rental;

  friend bool operator==(const CollectionsOwnership&, const CollectionsOwnership&) = default;
};

struct CollectionsChampionSkinMinimal {
  int32_t championId = 0;
  int32_t id = 0;  // champion id times 1000 plus the skin's number; number 0 is the base skin
  std::string name;
  CollectionsOwnership ownership;
  std::string splashPath;
  std::string tilePath;

  friend bool operator==(const CollectionsChampionSkinMinimal&,
                         const CollectionsChampionSkinMinimal&) = default;
};

struct CollectionsChampionMinimal {
  int32_t id = 0;
  CollectionsOwnership ownership;

  friend bool operator==(const CollectionsChampionMinimal&,
                         const CollectionsChampionMinimal&) = default;
};

struct CollectionsWardSkin {
  int64_t id = 0;
  std::string name;
  CollectionsOwnership ownership;
  std::string wardImagePath;
  std::string wardShadowImagePath;

  friend bool operator==(const CollectionsWardSkin&, const CollectionsWardSkin&) = default;
};

struct CollectionsSummonerIcons {
  std::vector<int32_t> icons;

  friend bool operator==(const CollectionsSummonerIcons&,
                         const CollectionsSummonerIcons&) = default;
};

struct GameDataSummonerIcon {
  int32_t id = 0;
  std::string iconPath;

  friend bool operator==(const GameDataSummonerIcon&, const GameDataSummonerIcon&) = default;
};

struct GameDataSummonerEmote {
  int64_t id = 0;
  std::string name;
  std::string inventoryIcon;
  std::string description;

  friend bool operator==(const GameDataSummonerEmote&, const GameDataSummonerEmote&) = default;
};

struct CollectionsEmote {
  int64_t itemId = 0;
  InventoryOwnership ownershipType = InventoryOwnership::kOwned;

  friend bool operator==(const CollectionsEmote&, const CollectionsEmote&) = default;
};

struct Summoner {
  uint32_t summonerLevel = 0;

  friend bool operator==(const Summoner&, const Summoner&) = default;
};

struct LoginSummonerLevelAndPoints {
  uint32_t summonerLevel = 0;

  friend bool operator==(const LoginSummonerLevelAndPoints&,
                         const LoginSummonerLevelAndPoints&) = default;
};

struct LoginAllSummonerData {
  LoginSummonerLevelAndPoints summonerLevelAndPoints;

  friend bool operator==(const LoginAllSummonerData&, const LoginAllSummonerData&) = default;
};

struct LoginSimpleMessage {
  uint64_t accountId = 0;
  std::string msgId;
  std::string type;
  std::vector<std::string> params;

  friend bool operator==(const LoginSimpleMessage&, const LoginSimpleMessage&) = default;
};

struct LoginDataPacket {
  LoginAllSummonerData allSummonerData;
  std::vector<LoginSimpleMessage> simpleMessages;

  friend bool operator==(const LoginDataPacket&, const LoginDataPacket&) = default;
};

struct LoginSession {
  LoginSessionStates state = LoginSessionStates::kInProgress;
  uint64_t summonerId = 0;
  uint64_t accountId = 0;

  friend bool operator==(const LoginSession&, const LoginSession&) = default;
};

struct GameflowSession {
  GameflowPhase phase = GameflowPhase::kNone;

  friend bool operator==(const GameflowSession&, const GameflowSession&) = default;
};

struct LootItemGdsResource {
  std::string id;
  std::string name;
  std::string description;
  std::string image;
  std::string startDate;
  std::string endDate;
  int32_t mappedStoreId = 0;
  int32_t lifetimeMax = 0;
  bool autoRedeem = false;
  LootRarity rarity = LootRarity::kDefault;
  LootType type = LootType::kChest;

  friend bool operator==(const LootItemGdsResource&, const LootItemGdsResource&) = default;
};

struct LootRecipeGdsResource {
  std::string id;
  std::string description;
  std::string contextMenuText;
  std::string requirementText;
  std::string imagePath;

  friend bool operator==(const LootRecipeGdsResource&, const LootRecipeGdsResource&) = default;
};

struct LootTableGdsResource {
  std::string id;
  std::string description;
  std::string descriptionLong;
  std::string image;

  friend bool operator==(const LootTableGdsResource&, const LootTableGdsResource&) = default;
};

// The whole game-data file; its keys begin with a capital letter.
struct LootDataGdsResource {
  std::vector<LootItemGdsResource> LootItems;
  std::vector<LootRecipeGdsResource> LootRecipes;
  std::vector<LootTableGdsResource> LootTables;

  friend bool operator==(const LootDataGdsResource&, const LootDataGdsResource&) = default;
};

// Registers the types above in order, the two session enumerations each before its user.
// REQUIRES: RegisterLootEnums has run.
void RegisterSiblingResources(TypeRegistry& registry);

}  // namespace Kest::Client::Loot::Api
