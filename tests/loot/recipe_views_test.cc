// Recipe lists and context menus, read and watched.
#include "loot/wire/register_resources.h"
#include "tests/loot/calls_fixture.h"
#include "tests/loot/loot_plugin_fixture.h"

namespace Kest::Client::Loot {
namespace {

using ::testing::ElementsAre;
using ::testing::Field;
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
    AnswerGet("/tav-game-data/assets/v1/loot.json",
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
  std::vector<Api::ContextMenu> Menu(const std::string& lootId) {
    const std::string body = host_.Get(MenuPath(lootId)).body;
    EXPECT_EQ(host_.Post(MenuPath(lootId)).body, body);
    return Parse<std::vector<Api::ContextMenu>>(body);
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

TEST_F(RecipeViewsTest, RecipesAreListedByTheirFirstIngredient) {
  StartWithLoot(kLoot);
  const auto named = [&](const std::string& lootId) {
    const std::string body = host_.Get(RecipesPath(lootId)).body;
    EXPECT_EQ(host_.Post(RecipesPath(lootId)).body, body);
    return Parse<std::vector<Api::Recipe>>(body);
  };
  for (const char* lootId : {"TOKEN_6-12", "TOKEN_6-99"}) EXPECT_EQ(named(lootId).size(), 1u);
  const Api::Recipe broken = named("SHARD_11")[0];
  Api::Recipe expected;
  expected.recipeName = "BREAK";
  expected.type = "DISENCHANT";
  expected.displayCategories = "CHAMPION";
  expected.crafterName = "me";
  expected.slots = {{1, {"SHARD_11"}, "SHARD_11", 1}};
  expected.outputs = {{"CURRENCY_champion", 90}, {"ODD", 1}};
  expected.metadata = {{{"ODD", {}, {}, {}}}, {}, true};
  EXPECT_EQ(broken, expected);
  const Api::Recipe raised = named("TOKEN_6-13")[0];
  EXPECT_EQ(raised.description + raised.contextMenuText + raised.requirementText + raised.imagePath,
            "Raises.RaiseTokensr.png");
  EXPECT_THAT(raised.slots, ElementsAre(Api::RecipeSlot{1, {"TOKEN_6"}, "TOKEN_6", 3},
                                        Field(&Api::RecipeSlot::slotNumber, 2),
                                        Api::RecipeSlot{3, {"SHARD_11", "SKIN_11005"}, "shards", 2},
                                        Field(&Api::RecipeSlot::slotNumber, 4)));
}

TEST_F(RecipeViewsTest, MenusOfferToRedeemThenTheRecipesWithWhatTheyTake) {
  StartWithLoot(kLoot);
  AnswerGet("/tav-champions/v1/inventories/7/skins-minimal",
            R"([{"id":11000,"championId":11},{"id":11005,"championId":11}])");
  Set("/tav-champions/v1/inventories/7/champions-minimal", R"([{"id":11}])");
  Login(7);
  const Api::ContextMenu redeem{"REDEEM", "REDEEM", "", "", true, "", 0, "", "", "", 0};
  const Api::ContextMenu raise{
      "RAISE", "TOKENSHARDUPGRADE",   "Raises.", "Raise", true, "CURRENCY_champion", 100,
      "3",     "SHARD_11,SKIN_11005", "A shard", 2};
  const Api::ContextMenu breaking{"BREAK", "DISENCHANT", "", "", true, "", 0, "", "", "", 0};
  const Api::ContextMenu forge{"FORGE",   "FORGE", "", "", true, "", 0, "", "SHARD_11,SKIN_11005",
                               "A shard", 1};
  EXPECT_THAT(Menu("SHARD_11"), ElementsAre(redeem, breaking)) << "not owned yet";
  EXPECT_THAT(Menu("SKIN_11005"), IsEmpty()) << "its champion is not owned";
  EXPECT_THAT(Menu("TOKEN_6-12"), ElementsAre(raise)) << "tokens of every champion count";
  EXPECT_THAT(Menu("ODD"), ElementsAre(forge));
  EXPECT_THAT(Menu("NOBODY"), IsEmpty());
  EXPECT_THAT(Menu("TOKEN_6-99"), IsEmpty()) << "not held";
  for (const char* missing :
       {R"("TOKEN_6","refId":"13")", R"("CURRENCY_champion")", R"("ODD")", R"("SHARD_11")"}) {
    const std::string one = R"([{"lootName":)" + std::string(missing) + R"(,"count":1}])";
    EXPECT_EQ(Craft("\"removed\":" + one), "");
    EXPECT_FALSE(Menu("TOKEN_6-12")[0].enabled) << missing;
    EXPECT_EQ(Craft("\"added\":" + one), "");
    EXPECT_TRUE(Menu("TOKEN_6-12")[0].enabled) << missing;
  }
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
