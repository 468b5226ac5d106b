// A player's days, drawn at random: the plugin is driven through everything at once, and a follower
// of its events and a plain model of the service must know at each step what it returns.
#include <functional>
#include <map>
#include <random>

#include "tests/loot/loot_plugin_fixture.h"
#include "tests/loot/token_text.h"

namespace Kest::Client::Loot {
namespace {

constexpr const char* kItem = "/tav-loot/v1/player-loot/";
constexpr const char* kGrants = "/tav-loot/v1/loot-grants";
constexpr const char* kCategories = "/tav-loot/v1/player-display-categories";
constexpr const char* kMenu = "/tav-loot/v1/player-loot/CHEST_plain/context-menu";
constexpr const char* kRecipes = "/tav-loot/v1/recipes/initial-item/CHEST_plain";

// By loot name and reference id; a count of 0 is not held.
using Counts = std::map<std::pair<std::string, std::string>, int>;

template <class Entries>
std::string Records(const Entries& counts) {
  std::string json;
  for (const auto& [key, count] : counts) {
    json += (json.empty() ? "[" : ",") + std::string(R"({"lootName":")") + key.first +
            R"(","refId":")" + key.second + R"(","count":)" + std::to_string(count) + "}";
  }
  return json.empty() ? "[]" : json + "]";
}

void Apply(const Counts& deltas, int sign, Counts* counts) {
  for (const auto& [key, delta] : deltas) {
    if (((*counts)[key] += sign * delta) == 0) counts->erase(key);
  }
}

class ScenarioTest : public LootPluginTest, public ::testing::WithParamInterface<int> {
 protected:
  ScenarioTest() {
    RespondToGet(
        "/tav-inventory/v1/signedInventory",
        R"({"TOURNAMENT_LOGO":")" + MakeToken(R"({"items":{"TOURNAMENT_LOGO":[]}})") + "\"}");
    for (const std::string summoner : {"7", "8"}) {
      RespondToGet("/tav-champions/v1/inventories/" + summoner + "/skins-minimal",
                   R"([{"id":11000,"championId":11},{"id":11005,"championId":11}])");
    }
    RecastDefinitions();
    playerLoot_ = Records(service_);
  }

  int Draw(size_t below) { return static_cast<int>(random_() % below); }

  void RecastDefinitions() {
    ++itemsVersion_;
    recipes_ = R"([{"recipeName":"OPEN","type":"OPEN","slots":[{"slotNumber":1,
        "query":"CHEST_plain","quantityExpression":")" +
               std::to_string(1 + Draw(3)) + R"("}]}])";
  }

  // ---- Steps, each with what it means for the model ---------------------------------------------
  Counts DrawDeltas() {
    static const std::pair<std::string, std::string> kKeys[] = {
        {"CHEST_plain", ""}, {"SHARD_11", ""}, {"ODD", ""}, {"SKIN_11005", ""}, {"TOKEN_6", "12"}};
    Counts deltas;
    for (int i = Draw(3); i > 0; --i) deltas[kKeys[Draw(5)]] = 1 + Draw(2);
    return deltas;
  }
  void Craft() {
    const Counts added = DrawDeltas();
    const Counts removed = Draw(4) == 0 ? service_ : DrawDeltas();  // all that is there, too
    const int outcome = Draw(4);
    result_ = {R"({"status":")" + std::string(outcome == 1 ? "REFUSED" : "OK") + R"(","added":)" +
                   Records(added) + R"(,"removed":)" + Records(removed) +
                   R"(,"redeemed":["SHARD_11","UNKNOWN"]})",
               outcome == 2 ? "lost" : ""};
    const bool sent = enabled_[0] && enabled_[1];
    if (sent && outcome != 1) {  // a lost response does not undo what the service did
      Apply(added, 1, &service_);
      Apply(removed, -1, &service_);
      playerLoot_ = Records(service_);
    }
    const auto reply = host_.Post("/tav-loot/v1/recipes/OPEN/craft", R"(["CHEST_plain"])");
    EXPECT_EQ(reply.status, sent && (outcome == 0 || outcome == 3) ? 200 : 500);
    if (reply.status != 200) return;
    Apply(added, 1, &held_);
    Apply(removed, -1, &held_);
  }
  // The same inventory in another order, after it came in its own.
  void RetrieveReversed() {
    host_.Post("/tav-loot/v1/refresh?force=true");
    playerLoot_ = Records(std::vector<Counts::value_type>(service_.rbegin(), service_.rend()));
    host_.Post("/tav-loot/v1/refresh?force=true");
  }
  void Configure() {
    const int which = Draw(2);
    enabled_[which] = Draw(4) != 0;
    Config(which == 0 ? "Enabled" : "PxhEnabled", enabled_[which] ? "true" : "false");
  }
  void ChangeGoal() {
    constexpr int kGoals[] = {63, 1, 47, 32, 0};
    goal_ = kGoals[Draw(5)];
    Config("InitializationGoalFlags", std::to_string(goal_));
  }
  void RespondAsSource() {
    const int which = Draw(4);
    const std::string summoner = Draw(2) == 0 ? "7" : "8";
    const std::string owned = Draw(2) == 0 ? "true" : "false";
    const std::string collections = "/tav-collections/v1/inventories/" + summoner;
    const std::pair<std::string, std::string> kResponses[] = {
        {"/tav-champions/v1/inventories/" + summoner + "/champions-minimal",
         R"([{"id":11,"ownership":{"owned":)" + owned + "}}]"},
        {collections + "/ward-skins", "[]"},
        {collections + "/summoner-icons", R"({"icons":[1]})"},
        {"/tav-inventory/v1/inventory/emotes", "[]"}};
    constexpr int kBits[] = {3, 4, 8, 32};
    responded_[which == 3 ? "" : summoner] |= kBits[which];
    host_.SetResource(kResponses[which].first, kResponses[which].second);
  }
  void LogInOrOut() {
    if (!summoner_.empty()) {
      host_.RemoveResource("/tav-login/v1/session");
      summoner_.clear();
      return;
    }
    summoner_ = Draw(2) == 0 ? "7" : "8";
    host_.Login(std::stoul(summoner_));
  }
  void ChangePhase() {
    constexpr const char* kPhases[] = {"Lobby",     "ChampSelect",  "InProgress",
                                       "EndOfGame", "PreEndOfGame", "None"};
    const int phase = Draw(6);
    allowed_ = phase == 0 || phase == 3 || phase == 5;
    host_.SetResource("/tav-gameflow/v1/session",
                      R"({"phase":")" + std::string(kPhases[phase]) + R"("})");
  }
  void TouchGrants() {
    if (Draw(3) != 0) {
      (allowed_ ? shown_ : queued_).push_back(nextGrant_++);
      return Push("championMasteryLootGrant", R"({"gameId":1,"lootName":"a"})");
    }
    const int64_t id = Draw(static_cast<size_t>(nextGrant_) + 1);
    std::erase(shown_, id);
    host_.Request("DELETE", kGrants + ("/" + std::to_string(id)));
  }
  void Step() {
    const std::function<void()> kMoves[] = {
        [this] { RecastDefinitions(); },
        [this] { host_.AdvanceSeconds(Draw(5)); },
        [this] { host_.Post("/tav-loot/v1/refresh?force=true"); },
        [this] { host_.Post("/tav-loot/v1/refresh"); },
        [this] { host_.Request("DELETE", kItem + std::string("CHEST_plain/new-notification")); },
        [this] { Configure(); },
        [this] { ChangeGoal(); },
        [this] { LogInOrOut(); },
        [this] { RespondAsSource(); },
        [this] { ChangePhase(); },
        [this] { TouchGrants(); },
        [this] { Craft(); },
        [this] { RetrieveReversed(); },
    };
    kMoves[Draw(std::size(kMoves))]();
  }

  // ---- What every event must be, knowing the ones before ----------------------------------------
  void Follow() {
    for (const PublishedEvent& event : host_.PublishedEvents()) {
      SCOPED_TRACE(event.type + " " + event.path + " " + event.json);
      if (event.path.starts_with(kItem) && event.path != kMenu) {
        FollowItem(event, event.path.substr(std::string(kItem).size()));
      } else if (event.path == "/tav-loot/v1/player-loot-map") {
        EXPECT_TRUE(itemsChanged_);
        EXPECT_EQ(Values(Parse<Api::PlayerLootItems>(event.json)), Values(known_));
      } else if (event.path == kLootMap) {
        EXPECT_TRUE(std::exchange(itemsChanged_, false));
        ++version_;
        ExpectMap(event.json);
      } else if (event.path != kGrants) {
        EXPECT_EQ(event.type, "Update");
        EXPECT_NE(std::exchange(published_[event.path], event.json), event.json)
            << "published twice";
      }
    }
    EXPECT_FALSE(itemsChanged_) << "the maps were not published";
    host_.ForgetPublished();
  }
  static std::map<std::string, Api::PlayerLoot> Values(const Api::PlayerLootItems& items) {
    std::map<std::string, Api::PlayerLoot> values;
    for (const auto& [lootId, item] : items) values.emplace(lootId, *item);
    return values;
  }
  void ExpectMap(const std::string& json) {
    const auto map = Parse<Api::PlayerLootMap>(json);
    EXPECT_EQ(map.version, version_);
    EXPECT_EQ(Values(map.playerLoot), Values(known_));
  }
  void FollowItem(const PublishedEvent& event, const std::string& lootId) {
    itemsChanged_ = true;
    const auto before = known_.find(lootId);
    EXPECT_EQ(event.type == "Create", before == known_.end());
    if (event.type == "Delete") {
      EXPECT_EQ(event.json, "");
      known_.erase(lootId);
      return;
    }
    const auto item = Parse<Api::PlayerLoot>(event.json);
    EXPECT_TRUE(before == known_.end() || *before->second != item) << "published twice";
    known_[lootId] = std::make_shared<const Api::PlayerLoot>(item);
  }
  // The maps, whose JSON is kept, have the order of the list, which is always written.
  void CompareOrder() {
    std::string items = "{";
    for (const auto& item :
         Parse<std::vector<Api::PlayerLoot>>(host_.Get("/tav-loot/v1/player-loot").body)) {
      items += (items.size() > 1 ? ",\"" : "\"") + item.lootId + "\":";
      ConversionContext context;
      WriteJsonValue(context, item, &items);
    }
    EXPECT_EQ(host_.Get("/tav-loot/v1/player-loot-map").body, items + "}");
  }
  void CompareWithResponses() {
    const bool enabled = enabled_[0] && enabled_[1];
    ExpectMap(host_.Get(kLootMap).body);
    CompareOrder();
    for (auto& [path, json] : published_) {
      const std::string body = host_.Get(path).body;
      // A view is followed from its first read on that finds an item or a recipe.
      if (json == "[]" && unknownViews_.contains(path)) json = body;
      if (json != "[]") unknownViews_.erase(path);
      EXPECT_EQ(body, json) << path;
    }
    EXPECT_EQ(published_["/tav-loot/v1/enabled"], enabled ? "true" : "false");
    EXPECT_EQ(published_["/tav-loot/v1/ready"], (flags_ & goal_) == goal_ ? "true" : "false");
    Counts counts;
    for (const auto& [lootId, item] : known_) counts[{item->lootName, item->refId}] = item->count;
    EXPECT_EQ(counts, held_);
    std::vector<int64_t> shown;
    for (const auto& grant :
         Parse<std::vector<Api::LootGrantNotification>>(host_.Get(kGrants).body)) {
      shown.push_back(grant.id);
    }
    EXPECT_EQ(shown, shown_);
  }
  void Settle() {
    host_.Get(kLootMap);  // the first read retrieves
    if (std::exchange(retrieved_, false)) {
      held_ = service_;
      flags_ |= 16;
    }
    if (!summoner_.empty()) flags_ |= responded_[summoner_] | responded_[""];
    if (allowed_) {
      shown_.insert(shown_.end(), queued_.begin(), queued_.end());
      queued_.clear();
    }
    Follow();
    CompareWithResponses();
  }

  std::mt19937 random_{static_cast<unsigned>(GetParam())};
  Counts service_{{{"CHEST_plain", ""}, 2}, {{"ODD", ""}, 1}};  // what the service holds
  Counts held_;                                                 // what the plugin must hold
  bool enabled_[2] = {false, false};
  int goal_ = 63;
  int flags_ = 0;
  std::map<std::string, int> responded_;  // bits by summoner; "" for every one
  std::string summoner_;
  bool allowed_ = true;
  int64_t nextGrant_ = 0;
  std::vector<int64_t> shown_, queued_;

  Api::PlayerLootItems known_;
  int64_t version_ = 0;
  std::set<std::string> unknownViews_{kMenu, kRecipes};
  bool itemsChanged_ = false;  // since the maps were published
  std::map<std::string, std::string> published_{{"/tav-loot/v1/enabled", "false"},
                                                {"/tav-loot/v1/ready", "false"},
                                                {kCategories, "[]"},
                                                {kMenu, "[]"},
                                                {kRecipes, "[]"}};
};

TEST_P(ScenarioTest, WhatIsPublishedAddsUpToWhatIsReturned) {
  if (GetParam() % 2 == 0) itemsInSlice_ = 1;  // with pauses
  StartPlugin();
  itemsInSlice_ = kItemsInSlice;
  for (const auto& [path, json] : published_) EXPECT_EQ(host_.Get(path).body, json) << path;
  for (int step = 0; step < 60 && !HasFailure(); ++step) {
    SCOPED_TRACE(step);
    Step();
    Settle();
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, ScenarioTest, ::testing::Range(301, 341));

}  // namespace
}  // namespace Kest::Client::Loot
