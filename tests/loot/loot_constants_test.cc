#include "loot/model/loot_constants.h"

#include <gtest/gtest.h>

#include "loot/model/decimal_string.h"
#include "loot/model/loot_id.h"

namespace Kest::Client::Loot {
namespace {

TEST(RentalTest, LooksAtTheEndAndWrapsForSixCharacters) {
  for (const char* type : {"SKIN_RENTAL", "_RENTAL", "A_RENTAL_RENTAL", "CHROMA", "abcdef"}) {
    EXPECT_TRUE(IsRentalType(type)) << type;
  }
  for (const char* type : {"SKIN", "BOOST", "ABCDEFG", "", "SKIN_RENTAL_X", "skin_rental"}) {
    EXPECT_FALSE(IsRentalType(type)) << type;
  }
}

TEST(Ranks, ListedWordsComeInOrderBehindUnlistedOnesAndStable) {
  constexpr std::string_view kOrder[] = {"A", "B"};
  std::vector<std::string_view> words = {"B1", "e", "A", "B2", "d"};
  SortByRank(kOrder, &words, [](std::string_view word) { return word.substr(0, 1); });
  EXPECT_EQ(words, (std::vector<std::string_view>{"e", "d", "A", "B1", "B2"}));
  const auto join = [](std::span<const std::string_view> list) {
    std::string text;
    for (const std::string_view word : list) text.append(word).append(" ");
    return text;
  };
  EXPECT_EQ(join(kTypeCategoryOrder), "CHEST CHAMPION SKIN EMOTE WARDSKIN SUMMONERICON ");
  EXPECT_EQ(join(kLootDeltaTypeOrder),
            "CHAMPION SKIN CHROMA WARDSKIN CHAMPION_RENTAL SKIN_RENTAL CHROMA_RENTAL "
            "WARDSKIN_RENTAL MATERIAL SUMMONERICON EMOTE EMOTE_RENTAL BOOST CURRENCY ");
  EXPECT_EQ(join(kContextMenuTypes), join(kOwnableTypes) + "BOOST ");
  EXPECT_FALSE(Contains(kOwnableTypes, "TOURNAMENT_LOGO")) << "that is the inventory's word";
  EXPECT_TRUE(Contains(kTokenUpgradeRecipeTypes, "TOKENESSENCEUPGRADE"));
  EXPECT_FALSE(Contains(kCurrencyLootIds, "CURRENCY_Champion"));
}

TEST(LootId, SplitsAtTheFirstDash) {
  EXPECT_EQ(MakeLootId("CHEST_x", ""), "CHEST_x");
  const char* const kCases[][3] = {{"TOKEN-42", "TOKEN", "42"},
                                   {"CHEST_x", "CHEST_x", ""},
                                   {"a-b-c", "a", "b-c"},
                                   {"-7", "", "7"},
                                   {"a-", "a", ""},
                                   {"", "", ""}};
  for (const auto& [id, name, refId] : kCases) {
    EXPECT_EQ(SplitLootId(id).lootName, std::string(name)) << id;
    EXPECT_EQ(SplitLootId(id).refId, std::string(refId)) << id;
  }
}

TEST(DecimalText, ReadsDigitsOnlyAndNamesTheRefusal) {
  const std::pair<std::string_view, const char*> kCases[] = {
      {"0042", "42"},
      {"2147483647", "2147483647"},
      {"00000000000000000000000001", "1"},
      {"2147483648", "stoi argument out of range"},
      {"99999999999999999999999999", "stoi argument out of range"},
      {"", "invalid stoi argument"},
      {"12a", "invalid stoi argument"},
      {"-1", "invalid stoi argument"},
      {{"1\0", 2}, "invalid stoi argument"}};
  for (const auto& [text, outcome] : kCases) {
    const Maybe<int32_t> read = ReadDecimal32(text);
    EXPECT_EQ(read ? std::to_string(read.GetValue()) : read.GetFailure().text, outcome) << text;
  }
}

}  // namespace
}  // namespace Kest::Client::Loot
