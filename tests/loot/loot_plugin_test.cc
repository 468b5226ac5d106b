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
  for (const std::string& path : {std::string(kLootMap), menu, recipes}) host_.Get(path);
  for (const std::string& loot :
       {R"([{"lootName":")" + id + R"(","count":1}])", std::string("[]")}) {
    playerLoot_ = loot;
    recipes_.insert(2, R"("crafterName":"y",)");
    itemsVersion_ += 3;
    host_.Post("/tav-loot/v1/refresh?force=true");
  }
  std::map<std::string, int> published;
  for (const PublishedEvent& event : host_.PublishedEvents()) ++published[event.path];
  EXPECT_EQ(published[item], 2) << "created and deleted";
  EXPECT_TRUE(published[menu] > 0 && published[recipes] > 0);
}

}  // namespace
}  // namespace Kest::Client::Loot
