// Craft and redeem through the endpoints.
#include "base/platform.h"
#include "tests/loot/loot_plugin_fixture.h"

namespace Kest::Client::Loot {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class TransactionsTest : public LootPluginTest {
 protected:
  FakeHost::Reply Craft(const std::string& lootIds, const char* query = "") {
    return host_.Post("/tav-loot/v1/recipes/SOME_recipe/craft" + std::string(query), lootIds);
  }
  FakeHost::Reply Redeem(const std::string& lootName) {
    return host_.Post("/tav-loot/v1/player-loot/" + lootName + "/redeem");
  }
};

TEST_F(TransactionsTest, SendsARequestIdAndTheTransactionAsJson) {
  StartWithLoot("[]");
  SetUuidSourceForTests([](UuidBytes* uuid) {
    uuid->fill(0xab);
    return true;
  });
  const std::string id = R"("args":["abababab-abab-abab-abab-abababababab",)";
  Craft(R"(["A","B-42","C-1-2"])");
  Craft("[]", "?repeat=5");
  Redeem("D-7");
  SetUuidSourceForTests(nullptr);
  EXPECT_THAT(
      host_.ServiceCalls("loot", "craftPlayerLootWithRefId"),
      ElementsAre(HasSubstr(id + R"("{\"recipeName\":\"SOME_recipe\",\"lootNameRefIds\":[)"
                                 R"({\"lootName\":\"A\",\"refId\":\"\"},)"
                                 R"({\"lootName\":\"B\",\"refId\":\"42\"},)"
                                 R"({\"lootName\":\"C\",\"refId\":\"1-2\"}],\"repeat\":1}"]})"),
                  HasSubstr(R"(\"lootNameRefIds\":[],\"repeat\":5}"]})")));
  EXPECT_THAT(host_.ServiceCalls("loot", "redeemPlayerLoot"),
              ElementsAre(HasSubstr(id + R"("{\"lootName\":\"D-7\"}"]})")));
}

TEST_F(TransactionsTest, AppliesDeltasAndAnswersTheItemsAsStored) {
  StartWithLoot(R"([{"lootName":"CHEST_plain","count":1},{"lootName":"ODD","count":5}])");
  result_.payload = R"({"status":"OK",
    "added":[{"lootName":"CURRENCY_champion","count":90},{"lootName":"NOBODY","count":1},
             {"lootName":"SHARD_11","count":1},{"lootName":"ODD","count":2147483647},
             {"lootName":"SKIN_11005","count":0}],
    "removed":[{"lootName":"CHEST_plain","count":1}]})";
  const auto update = Parse<Api::PlayerLootUpdate>(Craft("[]").body);
  std::vector<std::string> added;
  for (const auto& delta : update.added) {
    added.push_back(delta.playerLoot.lootId + " " + std::to_string(delta.deltaCount) + " -> " +
                    std::to_string(delta.playerLoot.count) + " " + delta.playerLoot.type);
  }
  EXPECT_THAT(added, ElementsAre("NOBODY 1 -> 1 ", "ODD 2147483647 -> 2147483647 ODDITY",
                                 "SKIN_11005 0 -> 0 SKIN", "SHARD_11 1 -> 1 CHAMPION_RENTAL",
                                 "CURRENCY_champion 90 -> 90 CURRENCY"));
  EXPECT_TRUE(host_.HasLine("Loot count out of range: ODD"));
  ASSERT_EQ(update.removed.size(), 1u);
  EXPECT_EQ(update.removed[0].playerLoot.type + std::to_string(update.removed[0].playerLoot.count),
            "CHEST0");
  EXPECT_EQ(Item("CHEST_plain").count, -1) << "it left the store";
  EXPECT_EQ(Item("SKIN_11005").count, -1) << "answered, but never stored";
  EXPECT_TRUE(Item("SHARD_11").isNew);
}

TEST_F(TransactionsTest, RedeemedItemsBecomeOwnedOrRented) {
  StartWithLoot(R"([{"lootName":"SHARD_11","count":2},{"lootName":"SKIN_11005","count":1}])");
  result_.payload = R"({"status":"OK","redeemed":["SHARD_11","SKIN_11005","NOBODY"]})";
  const auto update = Parse<Api::PlayerLootUpdate>(Redeem("SHARD_11").body);
  ASSERT_EQ(update.redeemed.size(), 3u);
  using Status = Api::RedeemableStatus;
  const Status kMarks[] = {Status::kAlreadyRented, Status::kAlreadyOwned, Status::kUnknown};
  for (size_t i = 0; i < 3; ++i) {
    const Api::PlayerLoot& item = update.redeemed[i].playerLoot;
    EXPECT_EQ(update.redeemed[i].deltaCount, 0);
    EXPECT_EQ(item.redeemableStatus, kMarks[i]) << item.lootName;
    EXPECT_TRUE(i == 2 || Item(item.lootId) == item) << item.lootName << " is stored alike";
  }
}

TEST_F(TransactionsTest, FailuresLeaveTheStoreAndSayWhy) {
  StartPlugin();
  EXPECT_EQ(Craft("[]").message, "Loot disabled.");
  EXPECT_EQ(Redeem("X").message, "Loot disabled.");
  Enable();
  host_.Get(kLootMap);
  host_.AdvanceSeconds(10);
  host_.ForgetPublished();
  const std::string added = R"("added":[{"lootName":"ODD","count":1}]})";
  result_ = {R"({"status":"TOO_FREQUENT",)" + added, ""};
  EXPECT_EQ(Craft("[]").message,
            "Unexpected status in ProcessPlayerLootUpdateResponse: TOO_FREQUENT");
  EXPECT_EQ(Retrievals(), 1u) << "an unexpected status is no reason to read again";
  result_ = {R"({"status":"OK",)" + added, "broken"};
  EXPECT_EQ(Redeem("X").message, "Error in ProcessPlayerLootUpdateResponse: broken");
  Redeem("X");
  EXPECT_EQ(Retrievals(), 2u) << "read again, but not twice within three seconds";
  EXPECT_EQ(Craft("{").status, 400);
  EXPECT_EQ(Craft("[]", "?repeat=often").status, 400);
  EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(TransactionsTest, OthersAreServedWhileACraftWaitsAndStopEndsIt) {
  StartWithLoot(R"([{"lootName":"ODD","count":5}])");
  result_.held = true;
  const auto waiting = host_.StartRequest("POST", "/tav-loot/v1/recipes/a/craft", "[]");
  host_.RunUntilIdle();
  EXPECT_EQ(Item("ODD").count, 5);
  host_.Stop();
  EXPECT_EQ(waiting->message, "Error in ProcessPlayerLootUpdateResponse: Finalizing");
}

}  // namespace
}  // namespace Kest::Client::Loot
