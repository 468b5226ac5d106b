#include "loot/model/player_loot_assembly.h"

#include <gtest/gtest.h>

#include "loot/model/ownership_rules.h"

namespace Kest::Client::Loot {
namespace {

using Api::InventoryOwnership;
using Api::ItemOwnershipStatus;
using Api::PlayerLoot;
using Api::RedeemableStatus;

constexpr Api::CollectionsOwnership kOwned = {true, true, {true}};
constexpr Api::CollectionsOwnership kRented = {true, false, {true}};
constexpr Api::CollectionsOwnership kFree = {true, false, {false}};
constexpr Api::CollectionsOwnership kUnowned = {false, false, {false}};

Api::CollectionsChampionSkinMinimal Skin(int32_t id, const Api::CollectionsOwnership& ownership) {
  const std::string number = std::to_string(id);
  return {id / 1000, id, "n" + number, ownership, "s" + number, "t" + number};
}

Api::LootItemGdsResource Described(std::string id, std::string image) {
  Api::LootItemGdsResource described;
  described.id = std::move(id);
  described.name = "Localised";
  described.description = "Described";
  described.image = std::move(image);
  return described;
}

// Champions 1 to 4 are owned, rented, free and not owned; champion 5 has no base skin, nor has the
// last one, whose id times 1000 is 704 in 32 bits.
void FillCollections(Collections* collections) {
  collections->ReplaceChampions(
      {{1, kOwned}, {2, kRented}, {3, kFree}, {4, kUnowned}, {5, kOwned}, {4294968, kOwned}});
  collections->ReplaceSkins({Skin(1000, kOwned), Skin(2000, kUnowned), Skin(3000, kUnowned),
                             Skin(4000, kUnowned), Skin(1015, kUnowned), Skin(1016, kRented),
                             Skin(4015, kOwned), Skin(6001, kOwned), Skin(704, kOwned)});
  collections->ReplaceWardSkins({{8, "Ward", kFree, "ward.png", "shade.png"}});
  collections->ReplaceEmoteInventory({{11, InventoryOwnership::kOwned},
                                      {12, InventoryOwnership::kRented},
                                      {13, InventoryOwnership::kF2p},
                                      {14, static_cast<InventoryOwnership>(99)}});
  collections->ReplaceOwnedSummonerIcons({{21, 22}});
  collections->ownedTournamentLogos = {31};
}

void FillGameData(GameData* gameData) {
  gameData->ReplaceEmotes({{11, "Emote", "emote.png", "d"}, {12, "Rented", "rented.png", "d"}});
  gameData->ReplaceIcons({{21, "icon21.png"}, {23, "first.png"}, {23, "icon23.png"}});
  Api::LootDataGdsResource file;
  file.LootItems = {Described("PICTURED", "image.png"), Described("PICTURED", "other.png")};
  gameData->ReplaceLoot(std::move(file));
}

// What the collections may change of an item, in one line.
std::string StatusText(const PlayerLoot& item) {
  constexpr const char* kRedeemable[] = {"UNKNOWN",
                                         "REDEEMABLE",
                                         "REDEEMABLE_RENTAL",
                                         "NOT_REDEEMABLE",
                                         "NOT_REDEEMABLE_RENTAL",
                                         "ALREADY_OWNED",
                                         "ALREADY_RENTED",
                                         "CHAMPION_NOT_OWNED",
                                         "SKIN_NOT_OWNED"};
  constexpr const char* kOwnership[] = {"NONE", "FREE", "RENTAL", "OWNED"};
  return item.itemDesc + " " + item.tilePath + " " + item.splashPath + " " + item.shadowPath + " " +
         kOwnership[static_cast<int>(item.itemStatus)] + " " +
         kOwnership[static_cast<int>(item.parentItemStatus)] + ":" +
         std::to_string(item.parentStoreItemId) + " " +
         kRedeemable[static_cast<int>(item.redeemableStatus)];
}

PlayerLoot OldItem(std::string_view type, int32_t storeItemId, std::string_view refId = {}) {
  PlayerLoot item;
  item.lootName = item.lootId = "Loot Name";
  item.itemDesc = item.tilePath = item.splashPath = item.shadowPath = "-";
  item.itemStatus = item.parentItemStatus = ItemOwnershipStatus::kFree;
  item.redeemableStatus = RedeemableStatus::kSkinNotOwned;
  item.parentStoreItemId = 77;
  item.type = type;
  item.storeItemId = storeItemId;
  item.refId = refId;
  return item;
}

constexpr const char* kUntouched = "- - - - FREE FREE:77 SKIN_NOT_OWNED";

TEST(CollectionStatusTest, EachTypeFollowsItsCollection) {
  const struct {
    const char* type;
    int32_t storeItemId;
    const char* refId;
    const char* status;
  } kCases[] = {
      {"CHAMPION", 1, "", "n1000 t1000 s1000 - OWNED FREE:77 ALREADY_OWNED"},
      {"CHAMPION_RENTAL", 1, "", "n1000 t1000 s1000 - OWNED FREE:77 ALREADY_OWNED"},
      {"CHAMPION", 2, "", "n2000 t2000 s2000 - RENTAL FREE:77 REDEEMABLE"},
      {"CHAMPION_RENTAL", 2, "", "n2000 t2000 s2000 - RENTAL FREE:77 ALREADY_RENTED"},
      {"CHAMPION", 3, "", "n3000 t3000 s3000 - FREE FREE:77 REDEEMABLE"},
      {"CHAMPION_RENTAL", 4, "", "n4000 t4000 s4000 - NONE FREE:77 REDEEMABLE_RENTAL"},
      {"CHAMPION", 5, "", kUntouched},        // no base skin
      {"CHAMPION", 6, "", kUntouched},        // no champion
      {"CHAMPION", 4294968, "", kUntouched},  // not skin 704
      {"SKIN", 1000, "", "n1000 t1000 s1000 - OWNED OWNED:1 ALREADY_OWNED"},
      {"SKIN", 1015, "", "n1015 t1015 s1015 - NONE OWNED:1 REDEEMABLE"},
      {"SKIN_RENTAL", 1016, "", "n1016 t1016 s1016 - RENTAL OWNED:1 ALREADY_RENTED"},
      {"SKIN", 4015, "", "n4015 t4015 s4015 - OWNED NONE:4 CHAMPION_NOT_OWNED"},
      {"SKIN", 2000, "", "n2000 t2000 s2000 - NONE RENTAL:2 CHAMPION_NOT_OWNED"},
      {"SKIN", 6001, "", kUntouched},  // no champion
      {"CHROMA", 1015, "", kUntouched},
      {"WARDSKIN", 8, "", "Ward ward.png ward.png shade.png FREE FREE:77 REDEEMABLE"},
      {"WARDSKIN_RENTAL", 8, "", "Ward ward.png ward.png shade.png FREE FREE:77 REDEEMABLE_RENTAL"},
      {"WARDSKIN", 9, "", kUntouched},
      {"EMOTE", 11, "", "Emote emote.png emote.png - OWNED FREE:77 ALREADY_OWNED"},
      {"EMOTE_RENTAL", 12, "", "Rented rented.png rented.png - RENTAL FREE:77 ALREADY_RENTED"},
      {"EMOTE", 13, "", "- - - - FREE FREE:77 REDEEMABLE"},
      {"EMOTE", 14, "", "- - - - OWNED FREE:77 ALREADY_OWNED"},
      {"EMOTE", 15, "", "- - - - NONE FREE:77 REDEEMABLE"},
      {"SUMMONERICON", 21, "", "- icon21.png icon21.png - OWNED FREE:77 ALREADY_OWNED"},
      {"SUMMONERICON", 22, "", "-   - OWNED FREE:77 ALREADY_OWNED"},
      {"SUMMONERICON", 23, "", "- icon23.png icon23.png - NONE FREE:77 REDEEMABLE"},
      {"SUMMONERICON", -1, "", "-   - NONE FREE:77 NOT_REDEEMABLE"},
      {"CHAMPION_TOKEN", -1, "1", "n1000 t1000 s1000 - OWNED FREE:77 NOT_REDEEMABLE"},
      {"CHAMPION_TOKEN", 0, "0003", "n3000 t3000 s3000 - FREE FREE:77 REDEEMABLE"},
      {"CHAMPION_TOKEN", 0, "6", "- - - - FREE FREE:77 NOT_REDEEMABLE"},
      {"CHAMPION_TOKEN", 0, "1x", "- - - - FREE FREE:77 NOT_REDEEMABLE"},
      {"CHAMPION_TOKEN", 0, "99999999999", "- - - - FREE FREE:77 NOT_REDEEMABLE"},
  };
  Collections collections;
  GameData gameData;
  FillCollections(&collections);
  FillGameData(&gameData);
  const CollectionStatus status(collections, gameData);
  for (const auto& c : kCases) {
    SCOPED_TRACE(std::string(c.type) + " " + std::to_string(c.storeItemId) + " " + c.refId);
    PlayerLoot item = OldItem(c.type, c.storeItemId, c.refId);
    status.Apply(&item);
    EXPECT_EQ(StatusText(item), c.status);
  }
  EXPECT_EQ(gameData.iconPaths().size(), 4u) << "an unknown icon leaves an empty entry";
}

TEST(CollectionStatusTest, WithoutAStoreItemNothingIsRedeemableUnlessTheChampionIsMissing) {
  Collections collections;
  GameData gameData;
  // A champion 0 and a skin -1: the store item id says "none", yet both are known.
  collections.ReplaceChampions({{0, kOwned}});
  collections.ReplaceSkins({Skin(-1, kUnowned)});
  const CollectionStatus status(collections, gameData);
  PlayerLoot item = OldItem("SKIN_RENTAL", -1);
  status.Apply(&item);
  EXPECT_EQ(item.redeemableStatus, RedeemableStatus::kNotRedeemableRental);
  collections.ReplaceChampions({{0, kRented}});
  status.Apply(&item);
  EXPECT_EQ(item.redeemableStatus, RedeemableStatus::kChampionNotOwned);
}

TEST(CollectionStatusTest, EmptyTablesKeepOrFallBackByType) {
  const std::string base = "/fe/tav-loot/assets/loot_item_icons/";
  const std::string named = base + "Loot Name.png";
  const std::string asset = base + "Asset X.png";
  const struct {
    const char* type;
    const char* asset;
    const char* lootId;
    std::string status;
  } kCases[] = {
      {"CHAMPION", "", "", kUntouched},
      {"SKIN_RENTAL", "", "", kUntouched},
      {"EMOTE_RENTAL", "", "", "- - - - NONE FREE:77 REDEEMABLE_RENTAL"},
      {"SUMMONERICON", "", "", "-   - NONE FREE:77 REDEEMABLE"},
      {"TOURNAMENTLOGO", "", "", "- " + named + " " + named + " - NONE FREE:77 REDEEMABLE"},
      {"TOURNAMENTLOGO", "Asset X", "", "- " + asset + " " + asset + " - NONE FREE:77 REDEEMABLE"},
      {"BOOST", "Asset X", "PICTURED", "- image.png image.png - NONE FREE:77 REDEEMABLE"},
      {"MATERIAL", "", "PICTURED", "- image.png image.png - FREE FREE:77 NOT_REDEEMABLE"},
      {"CHEST", "Asset X", "", "- " + asset + " " + asset + " - FREE FREE:77 NOT_REDEEMABLE"},
      {"never heard of_RENTAL", "", "",
       "- " + named + " " + named + " - FREE FREE:77 NOT_REDEEMABLE"},
      {"", "", "", "- " + named + " " + named + " - FREE FREE:77 NOT_REDEEMABLE"},
      {"CHAMPION_TOKEN", "", "", "- - - - FREE FREE:77 NOT_REDEEMABLE"},
  };
  const Collections collections;
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.type);
    GameData gameData;
    Api::LootDataGdsResource file;
    file.LootItems = {Described("PICTURED", "image.png")};
    gameData.ReplaceLoot(std::move(file));
    PlayerLoot item = OldItem(c.type, 5, "1");
    item.asset = c.asset;
    item.lootId = c.lootId;
    CollectionStatus(collections, gameData).Apply(&item);
    EXPECT_EQ(StatusText(item), c.status);
  }
}

TEST(OwnershipRules, RedeemedItemsOfOwnableTypesAreMarked) {
  const std::pair<const char*, const char*> kCases[] = {
      {"CHAMPION_RENTAL", "- - - - RENTAL FREE:77 ALREADY_RENTED"},
      {"SKIN", "- - - - OWNED FREE:77 ALREADY_OWNED"},
      {"CHROMA", "- - - - RENTAL FREE:77 ALREADY_RENTED"},
      {"TOURNAMENTLOGO", "- - - - OWNED FREE:77 ALREADY_OWNED"},
      {"EMOTE_RENTAL", kUntouched},
      {"BOOST", kUntouched},
  };
  for (const auto& [type, status] : kCases) {
    PlayerLoot item = OldItem(type, 1);
    MarkRedeemed(&item);
    EXPECT_EQ(StatusText(item), status) << type;
  }
}

TEST(OwnershipRules, TokensNeedTheirChampionInDigits) {
  SVDS::LootItemClientDTO chest, token;
  chest.type = "CHEST";
  token.type = "CHAMPION_TOKEN";
  EXPECT_FALSE(IsValidRecord({"a", "1", 1, 0}, nullptr));
  EXPECT_TRUE(IsValidRecord({"a", "", 1, 0}, &chest));
  EXPECT_TRUE(IsValidRecord({"a", "odd", 1, 0}, &chest));
  EXPECT_TRUE(IsValidRecord({"a", "103", 1, 0}, &token));
  EXPECT_FALSE(IsValidRecord({"a", "", 1, 0}, &token));
  EXPECT_FALSE(IsValidRecord({"a", "10 3", 1, 0}, &token));
  EXPECT_FALSE(IsValidRecord({"a", "-3", 1, 0}, &token));
}

class CreateTest : public ::testing::Test {
 protected:
  CreateTest() {
    definition_ = {"SHARD", "picture", "MATERIAL", "EPIC", 9, 4, "UP", 1, "t", "CAT", 3, 2};
    definitions_.ReplaceItems({definition_});
    Api::LootDataGdsResource file;
    file.LootItems = {Described("SHARD-7", "image.png")};
    gameData_.ReplaceLoot(std::move(file));
  }
  PlayerLoot Create(std::string refId, PlayerLoot item) {
    PlayerLootAssembly(definitions_, collections_, gameData_)
        .Create({"SHARD", std::move(refId), 5, 6}, definition_, &item);
    return item;
  }
  void ReplaceRecipes(std::string disenchantQuantity) {
    SVDS::LootSvdsRecipeClientDTO recipe;
    recipe.type = "DISENCHANT";
    recipe.slots = {{1, "SHARD", "1"}};
    recipe.outputs = {{"ESSENCE", std::move(disenchantQuantity), 1, false}};
    SVDS::LootSvdsRecipeClientDTO upgrade;
    upgrade.type = "UPGRADE";
    upgrade.slots = {{1, "SHARD", "1"}, {2, "q", "12"}};
    BindingProperty queries;
    queries.TakeMember("q").SetString("CURRENCY_cosmetic");
    definitions_.ReplaceQueryResults(std::move(queries));
    definitions_.ReplaceRecipes({recipe, upgrade});
  }
  SVDS::LootItemClientDTO definition_;
  LootDefinitions definitions_;
  Collections collections_;
  GameData gameData_;
};

TEST_F(CreateTest, FillsEveryFieldOfANewItem) {
  ReplaceRecipes("4");
  constexpr auto kNone = ItemOwnershipStatus::kNone;
  const PlayerLoot expected = {"SHARD",     "SHARD-7",  "7",       "Localised",
                               "Described", "",         "CAT",     "EPIC",
                               "t",         "MATERIAL", "picture", "image.png",
                               "image.png", "",         "UP",      "CURRENCY_cosmetic",
                               "ESSENCE",   kNone,      kNone,     RedeemableStatus::kNotRedeemable,
                               5,           2,          4,         0,
                               9,           12,         4,         6,
                               3,           false,      false};
  EXPECT_EQ(Create("7", {}), expected);
  const PlayerLoot plain = Create("", {});
  EXPECT_EQ(plain.lootId, "SHARD");
  EXPECT_EQ(plain.localizedName, "") << "the file names the id with its reference id only";
  EXPECT_EQ(plain.tilePath, "/fe/tav-loot/assets/loot_item_icons/picture.png");
}

TEST_F(CreateTest, KeepsWhatAReusedItemKnowsBetter) {
  ReplaceRecipes("4");
  PlayerLoot stored = Create("", {});
  stored.isNew = true;
  stored.localizedName = "kept";
  ReplaceRecipes("3");
  EXPECT_EQ(Create("", stored), stored) << "a lower value does not replace a higher one";
  ReplaceRecipes("5");
  EXPECT_EQ(Create("", stored).disenchantValue, 5);
  definitions_.ReplaceRecipes({});
  EXPECT_EQ(Create("", stored), stored) << "without recipes both keep their values";
  definition_.type = "CHROMA";
  EXPECT_TRUE(Create("", stored).isRental);
  EXPECT_EQ(Create("", stored).redeemableStatus, RedeemableStatus::kNotRedeemable);
}

TEST(GameDataTest, KeepsEveryIconAndWideEmoteIds) {
  GameData gameData;
  std::vector<Api::GameDataSummonerIcon> icons;
  for (int32_t id = 0; id < 1000; ++id) icons.push_back({id, std::to_string(id)});
  gameData.ReplaceIcons(icons);
  EXPECT_EQ(gameData.iconPaths().size(), 1000u);
  EXPECT_LE(gameData.iconPaths().load_factor(), gameData.iconPaths().max_load_factor());
  gameData.ReplaceEmotes({{4294967297, "wide", "", ""}});
  EXPECT_EQ(gameData.FindEmote(4294967297)->name, "wide");
  EXPECT_EQ(gameData.FindEmote(1), nullptr);
  gameData.ReplaceIcons({{5, "five"}});
  EXPECT_EQ(gameData.iconPaths().size(), 1u) << "a later load replaces the table";
}

}  // namespace
}  // namespace Kest::Client::Loot
