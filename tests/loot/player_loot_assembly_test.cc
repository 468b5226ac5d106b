#include "loot/model/player_loot_assembly.h"

#include <gtest/gtest.h>

#include <sstream>

#include "loot/model/ownership_rules.h"
#include "tests/support/golden.h"

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

Api::LootDataGdsResource LootFile(const std::string& id) {
  Api::LootDataGdsResource file;
  file.LootItems.resize(2);
  for (Api::LootItemGdsResource& described : file.LootItems) {
    described.id = id;
    described.name = "Localised";
    described.description = "Described";
    described.image = file.LootItems[0].image.empty() ? "image.png" : "other.png";
  }
  return file;
}

// What the collections may change of an item: description, tile, splash, shadow, status, parent
// status and id, redeemable status; the first letters of the words, of their second part when they
// have one. (X, x: not redeemable, not as rental.) '/' stands for the plugin's own icon folder.
std::string StatusText(const PlayerLoot& item) {
  constexpr std::string_view kIcons = "/fe/tav-loot/assets/loot_item_icons/";
  const auto path = [&](const std::string& text) {
    return " " + (text.starts_with(kIcons) ? text.substr(kIcons.size() - 1) : text);
  };
  return item.itemDesc + path(item.tilePath) + path(item.splashPath) + path(item.shadowPath) + " " +
         "NFRO"[static_cast<int>(item.itemStatus)] + " " +
         "NFRO"[static_cast<int>(item.parentItemStatus)] + std::to_string(item.parentStoreItemId) +
         " " + "?RrXxOoCS"[static_cast<int>(item.redeemableStatus)];
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

// "TYPE 5 ref=1 asset=Picture id=CHEST"
PlayerLoot ReadItem(const std::string& text) {
  std::istringstream words(text);
  std::string type;
  int32_t storeItemId = 0;
  words >> type >> storeItemId;
  PlayerLoot item = OldItem(type == "-" ? "" : type, storeItemId);
  for (std::string word; words >> word;) {
    const size_t equal = word.find('=');
    const std::string name = word.substr(0, equal);
    (name == "ref"     ? item.refId
     : name == "asset" ? item.asset
                       : item.lootId) = word.substr(equal + 1);
  }
  return item;
}

TEST(CollectionStatusTest, EachTypeFollowsItsCollection) {
  Collections collections;
  // Champions 1 to 4 are owned, rented, free and not owned; champion 5 has no base skin, nor has
  // the last one, whose id times 1000 is 704 in 32 bits.
  collections.ReplaceChampions(
      {{1, kOwned}, {2, kRented}, {3, kFree}, {4, kUnowned}, {5, kOwned}, {4294968, kOwned}});
  collections.ReplaceSkins({Skin(1000, kOwned), Skin(2000, kUnowned), Skin(3000, kUnowned),
                            Skin(4000, kUnowned), Skin(1015, kUnowned), Skin(1016, kRented),
                            Skin(4015, kOwned), Skin(6001, kOwned), Skin(704, kOwned)});
  collections.ReplaceWardSkins({{8, "Ward", kFree, "ward.png", "shade.png"}});
  using Held = InventoryOwnership;
  collections.ReplaceEmoteInventory(
      {{11, Held::kOwned}, {12, Held::kRented}, {13, Held::kF2p}, {14, static_cast<Held>(99)}});
  collections.ReplaceOwnedSummonerIcons({{21, 22}});
  collections.ownedTournamentLogos = {31};
  GameData gameData;
  gameData.ReplaceEmotes({{11, "Emote", "emote.png", "d"}, {12, "Rented", "rented.png", "d"}});
  gameData.ReplaceIcons({{21, "icon21.png"}, {23, "first.png"}, {23, "icon23.png"}});
  gameData.ReplaceLoot(LootFile("PICTURED"));
  const CollectionStatus status(collections, gameData);
  EXPECT_TRUE(Testing::GoldenCases("tests/loot/cases/collection_status.txt", [&](auto input) {
    PlayerLoot item = ReadItem(std::string(input));
    PlayerLoot explained = item;
    status.Apply(&item);
    DecisionTrace trace;
    status.Apply(&explained, &trace);
    EXPECT_EQ(explained, item) << "an explanation is made of the same decisions";
    return StatusText(item);
  }));
  EXPECT_EQ(gameData.iconPaths().size(), 4u) << "an unknown icon leaves an empty entry";
  // A champion 0 and a skin -1: the store item id says "none", yet both are known.
  collections.ReplaceSkins({Skin(-1, kUnowned)});
  PlayerLoot item = OldItem("SKIN_RENTAL", -1);
  for (const auto& [ownership, outcome] : {std::pair{kOwned, 'x'}, std::pair{kRented, 'C'}}) {
    collections.ReplaceChampions({{0, ownership}});
    status.Apply(&item);
    EXPECT_EQ(StatusText(item).back(), outcome);
  }
}

TEST(OwnershipRules, RedeemedItemsOfOwnableTypesAreMarked) {
  EXPECT_TRUE(Testing::GoldenCases("tests/loot/cases/redeemed_types.txt", [](auto type) {
    PlayerLoot item = OldItem(type, 1);
    MarkRedeemed(&item);
    return StatusText(item);
  }));
}

TEST(OwnershipRules, TokensNeedTheirChampionInDigits) {
  SVDS::LootItemClientDTO definition;
  EXPECT_FALSE(IsValidRecord({"a", "1", 1, 0}, nullptr).value);
  EXPECT_TRUE(Testing::GoldenCases("tests/loot/cases/valid_records.txt", [&](auto input) {
    const size_t space = input.find(' ');
    definition.type = input.substr(0, space);
    return IsValidRecord({"a", input.substr(space + 1), 1, 0}, &definition).value ? "valid"
                                                                                  : "invalid";
  }));
}

class CreateTest : public ::testing::Test {
 protected:
  CreateTest() {
    definition_ = {"SHARD", "picture", "MATERIAL", "EPIC", 9, 4, "UP", 1, "t", "CAT", 3, 2};
    gameData_.ReplaceLoot(LootFile("SHARD-7"));
  }
  PlayerLoot Create(std::string refId, PlayerLoot item) {
    lists_.items = MakeLootItems({definition_});
    const LootDefinitions definitions(lists_);
    PlayerLootAssembly(collections_, gameData_)
        .Create(definitions.recipes(), {"SHARD", std::move(refId), 5, 6}, definition_, &item);
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
    queries.GetOrAddMember("q").SetString("CURRENCY_cosmetic");
    lists_.queryResults = MakeShared(std::move(queries));
    lists_.recipes = MakeShared(std::vector{recipe, upgrade});
  }
  SVDS::LootItemClientDTO definition_;
  LootDefinitions::Lists lists_ = LootDefinitions().lists();
  Collections collections_;
  GameData gameData_;
};

TEST_F(CreateTest, KeepsWhatAReusedItemKnowsBetter) {
  ReplaceRecipes("4");
  PlayerLoot stored = Create("", {});
  stored.isNew = true;
  stored.localizedName = "kept";
  ReplaceRecipes("3");
  EXPECT_EQ(Create("", stored), stored) << "a lower value does not replace a higher one";
  ReplaceRecipes("5");
  EXPECT_EQ(Create("", stored).disenchantValue, 5);
  lists_.recipes = LootDefinitions().lists().recipes;
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
  gameData.ReplaceEmotes({{4294967297, "wide", "", ""}});
  EXPECT_EQ(gameData.FindEmote(4294967297)->name, "wide");
  EXPECT_EQ(gameData.FindEmote(1), nullptr);
  gameData.ReplaceIcons({{5, "five"}});
  EXPECT_EQ(gameData.iconPaths().size(), 1u) << "a later load replaces the table";
}

}  // namespace
}  // namespace Kest::Client::Loot
