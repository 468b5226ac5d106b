// What is too large for the texts of trace_test.cc.
#include "tests/loot/loot_plugin_fixture.h"

namespace Kest::Client::Loot {
namespace {

// Longer than any formatted message.
TEST_F(LootPluginTest, PathsOfLongIdsAreComplete) {
  const std::string id(5000, 'x');
  definitions_ = R"([{"lootName":")" + id + R"(","type":"CHEST"}])";
  recipes_ = R"([{"recipeName":"R","slots":[{"slotNumber":1,"query":")" + id +
             R"(","quantityExpression":"1"}]}])";
  StartPlugin();
  Enable();
  const std::string item = "/tav-loot/v1/player-loot/" + id;
  const std::string menu = item + "/context-menu";
  const std::string recipes = "/tav-loot/v1/recipes/initial-item/" + id;
  for (const std::string& path : {menu, recipes, std::string(kLootMap)}) host_.Get(path);
  for (const std::string& loot :
       {R"([{"lootName":")" + id + R"(","count":1}])", std::string("[]")}) {
    playerLoot_ = loot;
    host_.Post("/tav-loot/v1/refresh?force=true");
  }
  EXPECT_EQ(host_.Published(item).size(), 2u) << "created and deleted";
  EXPECT_FALSE(host_.Published(menu).empty() || host_.Published(recipes).empty());
}

}  // namespace
}  // namespace Kest::Client::Loot
