// The tournament logo load, seen through the logos that the player holds as loot.
#include "tests/loot/loot_plugin_fixture.h"
#include "tests/loot/token_text.h"
#include "tests/support/golden.h"

namespace Kest::Client::Loot {
namespace {

TEST_F(LootPluginTest, LogosAreReplacedOnceATokenHasCome) {
  definitions_ = R"([{"lootName":"LOGO_42","type":"TOURNAMENTLOGO","storeItemId":42},
                     {"lootName":"LOGO_7","type":"TOURNAMENTLOGO","storeItemId":7}])";
  StartWithLoot(R"([{"lootName":"LOGO_42","count":1},{"lootName":"LOGO_7","count":1}])");
  // "payload ..", which becomes a token, or a whole response.
  const auto load = [this](const std::string& input) {
    constexpr std::string_view kPayload = "payload ";
    const bool isPayload = input.starts_with(kPayload);
    const std::string token = isPayload ? MakeToken(input.substr(kPayload.size())) : "";
    RespondToGet("/tav-inventory/v1/signedInventory",
                 isPayload ? R"({"TOURNAMENT_LOGO":")" + token + R"("})" : input);
    host_.Post("/tav-loot/v1/refresh?force=true");
  };
  EXPECT_TRUE(Testing::GoldenCases("tests/loot/cases/tournament_logos.txt", [&](auto input) {
    load(R"(payload {"items":{"TOURNAMENT_LOGO":[{"inventoryType":"TOURNAMENT_LOGO",)"
         R"("payload":{"rewardSpec":{"name":"42"}}}]}})");
    NewTroubles();
    const size_t loads = host_.CountLines("Loot not yet ready: 16/63");
    load(std::string(input));
    std::string outcome = host_.CountLines("Loot not yet ready: 16/63") > loads ? "loaded," : "";
    for (const std::string& line : NewTroubles()) outcome += line + ",";
    load(std::string(input));  // builds the items again with what the set holds
    NewTroubles();
    outcome += " owned:";
    for (const std::string id : {"42", "7"}) {
      const bool owned = Item("LOGO_" + id).itemStatus == Api::ItemOwnershipStatus::kOwned;
      if (owned) outcome += " " + id;
    }
    return outcome;
  }));
}

}  // namespace
}  // namespace Kest::Client::Loot
