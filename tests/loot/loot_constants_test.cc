#include "loot/model/loot_constants.h"

#include <gtest/gtest.h>

#include "loot/model/decimal_string.h"
#include "loot/model/loot_id.h"
#include "tests/support/golden.h"

namespace Kest::Client::Loot {
namespace {

TEST(RentalTest, LooksAtTheEndAndWrapsForSixCharacters) {
  EXPECT_TRUE(Testing::GoldenCases("tests/loot/cases/rental_types.txt", [](std::string_view type) {
    return IsRentalType(type) ? "rental" : "kept";
  }));
}

TEST(Ranks, ListedWordsComeInOrderAfterUnlistedOnesAndStable) {
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
  EXPECT_TRUE(Testing::GoldenCases("tests/loot/cases/loot_ids.txt", [](std::string_view id) {
    const LootIdParts parts = SplitLootId(id);
    return '"' + std::string(parts.lootName) + "\" \"" + std::string(parts.refId) + '"';
  }));
}

TEST(DecimalString, ReadsDigitsOnlyAndNamesTheRefusal) {
  EXPECT_TRUE(Testing::GoldenCases("tests/loot/cases/decimals.txt", [](std::string_view text) {
    const Maybe<int32_t> read = ReadDecimal32(text);
    return read ? std::to_string(read.GetValue()) : read.GetFailure().text;
  }));
  EXPECT_FALSE(ReadDecimal32({"1\0", 2}));
}

}  // namespace
}  // namespace Kest::Client::Loot
