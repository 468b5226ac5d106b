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
};

struct CollectionsOwnership {
  bool freeToPlayReward = false;
  bool owned = false;
  CollectionsRental rental;
};

struct CollectionsChampionSkinMinimal {
  int32_t championId = 0;
  int32_t id = 0;  // champion id times 1000 plus the skin's number; number 0 is the base skin
  std::string name;
  CollectionsOwnership ownership;
  std::string splashPath;
  std::string tilePath;
};

struct CollectionsChampionMinimal {
  int32_t id = 0;
  CollectionsOwnership ownership;
};

struct CollectionsWardSkin {
  int64_t id = 0;
  std::string name;
  CollectionsOwnership ownership;
  std::string wardImagePath;
  std::string wardShadowImagePath;
};

struct CollectionsSummonerIcons {
  std::vector<int32_t> icons;
};

struct GameDataSummonerIcon {
  int32_t id = 0;
  std::string iconPath;
};

struct GameDataSummonerEmote {
  int64_t id = 0;
  std::string name;
  std::string inventoryIcon;
  std::string description;
};

struct CollectionsEmote {
  int64_t itemId = 0;
  InventoryOwnership ownershipType = InventoryOwnership::kOwned;
};

struct Summoner {
  uint32_t summonerLevel = 0;
};

struct LoginSummonerLevelAndPoints {
  uint32_t summonerLevel = 0;
};

struct LoginAllSummonerData {
  LoginSummonerLevelAndPoints summonerLevelAndPoints;
};

struct LoginSimpleMessage {
  uint64_t accountId = 0;
  std::string msgId;
  std::string type;
  std::vector<std::string> params;
};

struct LoginDataPacket {
  LoginAllSummonerData allSummonerData;
  std::vector<LoginSimpleMessage> simpleMessages;
};

struct LoginSession {
  LoginSessionStates state = LoginSessionStates::kInProgress;
  uint64_t summonerId = 0;
  uint64_t accountId = 0;
};

struct GameflowSession {
  GameflowPhase phase = GameflowPhase::kNone;
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
};

struct LootRecipeGdsResource {
  std::string id;
  std::string description;
  std::string contextMenuText;
  std::string requirementText;
  std::string imagePath;
};

struct LootTableGdsResource {
  std::string id;
  std::string description;
  std::string descriptionLong;
  std::string image;
};

// The game-data file; its keys begin with a capital letter.
struct LootDataGdsResource {
  std::vector<LootItemGdsResource> LootItems;
  std::vector<LootRecipeGdsResource> LootRecipes;
  std::vector<LootTableGdsResource> LootTables;
};

// Registers the types above in order, the two session enumerations each before its user.
// REQUIRES: RegisterLootEnums has run.
void RegisterSiblingResources(TypeRegistry& registry);

}  // namespace Kest::Client::Loot::Api
