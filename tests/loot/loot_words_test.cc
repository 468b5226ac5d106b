#include "loot/model/loot_words.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "loot/model/decimal_text.h"
#include "loot/model/loot_id.h"
#include "loot/model/loot_resources.h"

namespace Kest::Client::Loot {
namespace {

using ::testing::ElementsAre;

TEST(RentalTest, LooksAtTheEndAndWrapsForSixCharacters) {
  const struct {
    const char* why;
    std::string_view type;
    bool rental;
  } kCases[] = {
      {"suffix", "SKIN_RENTAL", true},
      {"no suffix", "SKIN", false},
      {"six characters wrap", "CHROMA", true},
      {"six characters of no known word wrap as well", "abcdef", true},
      {"five characters", "BOOST", false},
      {"seven characters", "ABCDEFG", false},
      {"empty", "", false},
      {"suffix alone", "_RENTAL", true},
      {"suffix not at the end", "SKIN_RENTAL_X", false},
      {"the last suffix counts", "A_RENTAL_RENTAL", true},
      {"lower case", "skin_rental", false},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.why);
    EXPECT_EQ(IsRentalType(c.type), c.rental);
  }
}

TEST(Ranks, DeltasSortByTypeUnlistedFirstAndStable) {
  std::vector<Api::PlayerLootDelta> deltas;
  for (const char* type : {"CURRENCY", "CHAMPION", "CHEST", "EMOTE_RENTAL", "odd", "CHAMPION"}) {
    deltas.push_back({.deltaCount = static_cast<int32_t>(deltas.size()), .playerLoot = {}});
    deltas.back().playerLoot.type = type;
  }
  SortByRank(
      kLootDeltaTypeOrder, &deltas,
      [](const Api::PlayerLootDelta& delta) -> std::string_view { return delta.playerLoot.type; });
  std::vector<int32_t> order;
  for (const auto& delta : deltas) order.push_back(delta.deltaCount);
  EXPECT_THAT(order, ElementsAre(2, 4, 1, 5, 3, 0));
}

TEST(Ranks, ListedOrdersAndGroupsHoldTheirWords) {
  const auto join = [](std::span<const std::string_view> words) {
    std::string text;
    for (const std::string_view word : words) text.append(word).append(" ");
    return text;
  };
  EXPECT_EQ(join(kTypeCategoryOrder), "CHEST CHAMPION SKIN EMOTE WARDSKIN SUMMONERICON ");
  EXPECT_EQ(join(kLootDeltaTypeOrder),
            "CHAMPION SKIN CHROMA WARDSKIN CHAMPION_RENTAL SKIN_RENTAL CHROMA_RENTAL "
            "WARDSKIN_RENTAL MATERIAL SUMMONERICON EMOTE EMOTE_RENTAL BOOST CURRENCY ");
  EXPECT_EQ(join(kContextMenuTypes), join(kOwnableTypes) + "BOOST ");
  EXPECT_FALSE(IsOneOf(kOwnableTypes, "EMOTE_RENTAL"));
  EXPECT_FALSE(IsOneOf(kOwnableTypes, "TOURNAMENT_LOGO")) << "that is the inventory's word";
  EXPECT_TRUE(IsOneOf(kTokenUpgradeRecipeTypes, "TOKENESSENCEUPGRADE"));
  EXPECT_FALSE(IsOneOf(kCurrencyLootIds, "CURRENCY_Champion"));
}

TEST(LootId, JoinsAndSplitsAtTheFirstDash) {
  EXPECT_EQ(MakeLootId("CHEST_x", ""), "CHEST_x");
  EXPECT_EQ(MakeLootId("TOKEN", "42"), "TOKEN-42");
  const struct {
    std::string_view id, name, refId;
  } kCases[] = {{"TOKEN-42", "TOKEN", "42"},
                {"CHEST_x", "CHEST_x", ""},
                {"a-b-c", "a", "b-c"},
                {"-7", "", "7"},
                {"a-", "a", ""},
                {"", "", ""}};
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.id);
    EXPECT_EQ(SplitLootId(c.id).lootName, c.name);
    EXPECT_EQ(SplitLootId(c.id).refId, c.refId);
  }
}

TEST(DecimalText, ReadsDigitsOnlyAndNamesTheRefusal) {
  const struct {
    std::string_view text;
    int32_t value;
    const char* failure;
  } kCases[] = {{"0042", 42, ""},
                {"2147483647", 2147483647, ""},
                {"00000000000000000000000001", 1, ""},
                {"2147483648", 0, "stoi argument out of range"},
                {"99999999999999999999999999", 0, "stoi argument out of range"},
                {"", 0, "invalid stoi argument"},
                {"12a", 0, "invalid stoi argument"},
                {"-1", 0, "invalid stoi argument"},
                {std::string_view("1\0", 2), 0, "invalid stoi argument"}};
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.text);
    const Maybe<int32_t> read = ReadDecimal32(c.text);
    EXPECT_EQ(read ? "" : read.GetFailure().text, c.failure);
    EXPECT_EQ(read ? read.GetValue() : 0, c.value);
  }
}

}  // namespace
}  // namespace Kest::Client::Loot
