// Recipe lists and context menus, read and watched.
#include "loot/wire/register_resources.h"
#include "tests/loot/calls_fixture.h"
#include "tests/loot/loot_plugin_fixture.h"
#include "tests/support/golden.h"

namespace Kest::Client::Loot {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RecipeViewsTest : public LootPluginTest {
 protected:
  RecipeViewsTest() {
    recipes_ = R"([
      {"recipeName":"BREAK","type":"DISENCHANT","displayCategories":"CHAMPION","crafterName":"me",
       "slots":[{"slotNumber":1,"query":"SHARD_11","quantityExpression":"1"}],
       "outputs":[{"lootName":"CURRENCY_champion","quantityExpression":"2*45"},
                  {"lootName":"ODD","quantityExpression":"1"}],
       "metadata":{"tooltipsDisabled":true,"guaranteedDescriptions":[{"lootName":"ODD"}]}},
      {"recipeName":"RAISE","type":"TOKENSHARDUPGRADE","slots":[
        {"slotNumber":3,"query":"shards","quantityExpression":"2"},
        {"slotNumber":2,"query":"CURRENCY_champion","quantityExpression":"100"},
        {"slotNumber":4,"query":"ODD","quantityExpression":"1"},
        {"slotNumber":1,"query":"TOKEN_6","quantityExpression":"3"}]},
      {"recipeName":"FORGE","type":"FORGE","slots":[
        {"slotNumber":5,"query":"shards","quantityExpression":"1"},
        {"slotNumber":4,"query":"ODD","quantityExpression":"1"}]}])";
    queries_ = R"({"shards":["SHARD_11","SKIN_11005"]})";
    RespondToGet("/tav-game-data/assets/v1/loot.json",
                 R"({"LootItems":[{"id":"SHARD_11","name":"A shard"}],
                  "LootRecipes":[{"id":"RAISE","description":"Raises.","contextMenuText":"Raise",
                                  "requirementText":"Tokens","imagePath":"r.png"}]})");
  }
  static std::string MenuPath(const std::string& lootId) {
    return "/tav-loot/v1/player-loot/" + lootId + "/context-menu";
  }
  static std::string RecipesPath(const std::string& lootId) {
    return "/tav-loot/v1/recipes/initial-item/" + lootId;
  }
  std::string Read(const std::string& path) {
    const std::string body = host_.Get(path).body;
    EXPECT_EQ(host_.Post(path).body, body);
    return body;
  }
  std::string Craft(const std::string& result) {
    result_.payload = R"({"status":"OK",)" + result + "}";
    return host_.Post("/tav-loot/v1/recipes/RAISE/craft", "[]").message;
  }
};

constexpr const char* kLoot = R"([
  {"lootName":"SHARD_11","count":1},{"lootName":"ODD","count":1},
  {"lootName":"CURRENCY_champion","count":100},{"lootName":"SKIN_11005","count":1},
  {"lootName":"TOKEN_6","refId":"12","count":2},{"lootName":"TOKEN_6","refId":"13","count":1}])";

TEST_F(RecipeViewsTest, ListRecipesByTheirFirstIngredientAndOfferWhatTheyTake) {
  StartWithLoot(kLoot);
  RespondToGet("/tav-champions/v1/inventories/7/skins-minimal",
               R"([{"id":11000,"championId":11},{"id":11005,"championId":11}])");
  Set("/tav-champions/v1/inventories/7/champions-minimal", R"([{"id":11}])");
  Login(7);
  std::string text;
  for (const char* lootId :
       {"SHARD_11", "SKIN_11005", "TOKEN_6-12", "TOKEN_6-99", "ODD", "UNKNOWN"}) {
    text.append(lootId) += ":\n" + Read(RecipesPath(lootId)) + "\n" + Read(MenuPath(lootId)) + "\n";
  }
  for (const char* missing :
       {R"("TOKEN_6","refId":"13")", R"("CURRENCY_champion")", R"("ODD")", R"("SHARD_11")"}) {
    const std::string one = R"([{"lootName":)" + std::string(missing) + R"(,"count":1}])";
    EXPECT_EQ(Craft("\"removed\":" + one), "");
    text.append("without ").append(missing) += ":\n" + Read(MenuPath("TOKEN_6-12")) + "\n";
    EXPECT_EQ(Craft("\"added\":" + one), "");
    EXPECT_NE(Read(MenuPath("TOKEN_6-12")).find("\"enabled\":true"), std::string::npos) << missing;
  }
  EXPECT_TRUE(Testing::GoldenText("tests/loot/traces/recipe_views.txt", text));
}

TEST_F(RecipeViewsTest, WatchedViewsArePublishedOnceWhenTheyChange) {
  StartWithLoot(kLoot);
  const auto views = [&] {
    std::vector<std::string> changed;
    for (const std::string& event : Events()) {
      if (event.ends_with("context-menu") || event.find("recipes") != std::string::npos) {
        changed.push_back(event);
      }
    }
    host_.ForgetPublished();
    return changed;
  };
  Craft(R"("removed":[{"lootName":"ODD","count":1}])");
  EXPECT_THAT(views(), IsEmpty()) << "nothing was read yet";
  for (const char* lootId : {"TOKEN_6-12", "SHARD_11", "TOKEN_6-12"}) {
    host_.Get(MenuPath(lootId));
    host_.Get(RecipesPath(lootId));
  }
  Craft(R"("added":[{"lootName":"ODD","count":1}])");
  EXPECT_EQ(host_.Published(MenuPath("TOKEN_6-12")).back(), host_.Get(MenuPath("TOKEN_6-12")).body);
  EXPECT_THAT(views(), ElementsAre("Update " + MenuPath("TOKEN_6-12")));
  Craft(R"("added":[{"lootName":"ODD","count":1},{"lootName":"CHEST_plain","count":1}])");
  EXPECT_THAT(views(), IsEmpty()) << "counts that make no difference";
}

using WatchedViewsTest = CallsTest;

TEST_F(WatchedViewsTest, AReaderDoesNotTakeTheNewsFromThoseWhoFollow) {
  Api::RegisterLootResources(TypeRegistry::Process());
  LootState state;
  WatchedViews views(client_, state);
  Api::PlayerLoot skin;
  skin.lootName = skin.lootId = "SKIN";
  skin.type = "SKIN";
  skin.redeemableStatus = Api::RedeemableStatus::kRedeemable;
  host_.RunTask([&] {
    EXPECT_THAT(views.ReadContextMenu("SKIN"), IsEmpty());
    state.store.Put(skin);
    EXPECT_EQ(views.ReadContextMenu("SKIN").size(), 1u);
    views.PublishChanges();
    views.PublishChanges();
  });
  EXPECT_EQ(host_.Published("/tav-loot/v1/player-loot/SKIN/context-menu").size(), 1u);
}

}  // namespace
}  // namespace Kest::Client::Loot
