// The tournament logo load, seen through the logos that the player holds as loot.
#include "tests/loot/loot_plugin_fixture.h"
#include "tests/loot/token_text.h"

namespace Kest::Client::Loot {
namespace {

using ::testing::Contains;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

std::string Logo(const std::string& name) {
  return R"({"inventoryType":"TOURNAMENT_LOGO","payload":{"rewardSpec":{"name":)" + name + "}}}";
}

std::string Answer(const std::string& logos) {
  return R"({"TOURNAMENT_LOGO":")" + MakeToken(R"({"items":{"TOURNAMENT_LOGO":)" + logos + "}}") +
         R"("})";
}

TEST_F(LootPluginTest, LogosAreReplacedOnceATokenHasCome) {
  definitions_ = R"([{"lootName":"LOGO_42","type":"TOURNAMENTLOGO","storeItemId":42},
                     {"lootName":"LOGO_7","type":"TOURNAMENTLOGO","storeItemId":7}])";
  StartWithLoot(R"([{"lootName":"LOGO_42","count":1},{"lootName":"LOGO_7","count":1}])");
  const std::string unable = "2 Unable to load tournament logo inventory - ";
  const std::string good = "[" + Logo("\"42\"") + "]";
  const struct {
    const char* why;
    std::string answer, line;
    bool owned;  // 42, afterwards; 7 never is
  } kCases[] = {
      {"no token", "{}", unable + "missing JWT token.", true},
      {"no map", "[]", "2 Failed to retrieve tournament logo player inventory: Error conv", true},
      {"a token of one segment", R"({"TOURNAMENT_LOGO":"e30"})",
       unable + "missing 'items' in JWT payload.", false},
      {"null items", R"({"TOURNAMENT_LOGO":")" + MakeToken(R"({"items":null})") + R"("})",
       unable + "missing 'items' in JWT payload.", false},
      {"no list", R"({"TOURNAMENT_LOGO":")" + MakeToken(R"({"items":{}})") + R"("})",
       unable + "missing 'TOURNAMENT_LOGO' in JWT payload.", false},
      {"an object", Answer("{}"), unable + "Bad cast", false},
      {"no text for a name: what was read stays",
       Answer("[" + Logo("\"42\"") + "," + Logo("7") + "]"), unable + "Bad cast", true},
      {"no text for a type", Answer(R"([{"inventoryType":1},)" + Logo("\"42\"") + "]"),
       unable + "Bad cast", false},
      {"skipped elements",
       Answer(R"([{"inventoryType":"LOGO","payload":{"rewardSpec":{"name":"7"}}},{},[],)"
              R"({"inventoryType":"TOURNAMENT_LOGO","payload":null},)" +
              Logo("\"\"") + "," + Logo("\"7a\"") + "," + Logo("\"4294967303\"") + "," +
              Logo("\"0042\"") + "," + Logo("\"42\"") + "]"),
       "", true},
      {"none", Answer("[]"), "", false},
  };
  NewTroubles();
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.why);
    const auto refresh = [&](const std::string& answer) {
      AnswerGet("/tav-inventory/v1/signedInventory", answer);
      host_.Post("/tav-loot/v1/refresh?force=true");
    };
    const auto owned = [&](const char* lootId) {
      return Item(lootId).itemStatus == Api::ItemOwnershipStatus::kOwned;
    };
    refresh(Answer(good));
    ASSERT_TRUE(owned("LOGO_42"));
    EXPECT_THAT(NewTroubles(), IsEmpty());
    const size_t answered = host_.CountLines("Loot not yet ready: 16/63");
    refresh(c.answer);
    const std::vector<std::string> lines = NewTroubles();
    EXPECT_EQ(lines.size(), c.line.empty() ? 0u : 1u);
    for (const std::string& line : lines) EXPECT_THAT(line, HasSubstr(c.line));
    EXPECT_EQ(host_.CountLines("Loot not yet ready: 16/63") - answered, c.line.empty() ? 1u : 0u);
    refresh(c.answer);  // builds the items afresh with what the set holds
    NewTroubles();
    EXPECT_EQ(owned("LOGO_42"), c.owned);
    EXPECT_FALSE(owned("LOGO_7"));
  }
  EXPECT_THAT(host_.Requests().back().url, EndsWith("?inventoryTypes=%5B%22TOURNAMENT_LOGO%22%5D"));
}

TEST_F(LootPluginTest, LogosAreLoadedAgainAfterARetrievalThatNobodyWaitsFor) {
  StartWithLoot("[]");
  EXPECT_THAT(NewTroubles(),
              Contains(HasSubstr("2 Failed to retrieve tournament logo player inventory: Error")));
  EXPECT_FALSE(host_.HasLine("Loot not yet ready: 16/63"));
  AnswerGet("/tav-inventory/v1/signedInventory", Answer("[]"));
  host_.AdvanceSeconds(3);
  host_.Post("/tav-loot/v1/refresh");
  EXPECT_TRUE(host_.HasLine("Loot not yet ready: 16/63"));
  EXPECT_THAT(host_.Printed({Testing::Action::kPost}),
              Contains("post LootPlugin.LoadTournamentLogoInventory"));
}

}  // namespace
}  // namespace Kest::Client::Loot
