// A small world and the calls that tests of the emulated platform make on it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "host/world/json/json_reader.h"
#include "host/world/world.h"

namespace Kest::Host {

// One definition of each kind a test needs; line and column of its parts are what tests of broken
// files replace.
inline constexpr std::string_view kSmallWorld = R"({
  "name": "Pond",
  "champions": [{"id": 1, "name": "Heron", "owned": true}, {"id": 2, "name": "Newt"}],
  "skins": [{"id": 1001, "name": "Grey Heron"}, {"id": 2001, "name": "Red Newt"}],
  "emotes": [{"id": 7, "name": "Splash"}],
  "summonerIcons": [{"id": 5, "name": "Reed"}],
  "tournamentLogos": [{"id": 42, "name": "Pond Cup"}],
  "definitions": [
    {"lootName": "CHEST_reed", "type": "CHEST"},
    {"lootName": "MATERIAL_key", "type": "MATERIAL"},
    {"lootName": "CURRENCY_champion", "type": "CURRENCY"},
    {"lootName": "CHAMPION_2", "type": "CHAMPION", "storeItemId": 2},
    {"lootName": "CHAMPION_RENTAL_1", "type": "CHAMPION_RENTAL", "storeItemId": 1},
    {"lootName": "CHAMPION_RENTAL_2", "type": "CHAMPION_RENTAL", "storeItemId": 2},
    {"lootName": "SKIN_1001", "type": "SKIN", "storeItemId": 1001},
    {"lootName": "SKIN_2001", "type": "SKIN", "storeItemId": 2001},
    {"lootName": "EMOTE_7", "type": "EMOTE", "storeItemId": 7},
    {"lootName": "EMOTE_none", "type": "EMOTE"},
    {"lootName": "BOOST_wind", "type": "BOOST", "storeItemId": 3},
    {"lootName": "CHAMPION_TOKEN_star", "type": "CHAMPION_TOKEN"},
    {"lootName": "CHAMPION_TOKEN_crown", "type": "CHAMPION_TOKEN"}
  ],
  "queries": {"shards": ["CHAMPION_RENTAL_1", "CHAMPION_RENTAL_2"], "stars": "CHAMPION_TOKEN_star-1"},
  "odds": {"TABLE_any": [{"lootName": "SKIN_1001", "weight": 3}, {"lootName": "EMOTE_7", "quantity": 2}]},
  "recipes": [
    {"recipeName": "OPEN_reed", "type": "OPEN",
     "slots": [{"slotNumber": 1, "query": "MATERIAL_key"}, {"slotNumber": 0, "query": "CHEST_reed"}],
     "outputs": [{"lootName": "TABLE_any"}, {"lootName": "CURRENCY_champion", "quantityExpression": "2 * 5"},
                 {"lootName": "CHEST_reed", "probability": 0.25}]},
    {"recipeName": "REROLL", "type": "REROLL", "slots": [{"slotNumber": 0, "query": "shards", "quantityExpression": "3"}],
     "outputs": [{"lootName": "CHAMPION_2"}]},
    {"recipeName": "MIX", "type": "FORGE", "slots": [{"slotNumber": 0, "query": "shards"}, {"slotNumber": 1, "query": "CHAMPION_RENTAL_1"}],
     "outputs": [{"lootName": "MATERIAL_key"}]},
    {"recipeName": "CROWN", "type": "TOKENESSENCEUPGRADE",
     "slots": [{"slotNumber": 0, "query": "stars", "quantityExpression": "2"}, {"slotNumber": 1, "query": "CURRENCY_champion", "quantityExpression": "4"}],
     "outputs": [{"lootName": "CHAMPION_TOKEN_crown"}]}
  ],
  "service": {"latency": 20, "latencies": {"redeemPlayerLoot": 30}, "newPlayerChest": "CHEST_reed",
              "versions": {"lootItems": 11, "recipes": 12, "queries": 13}},
  "configuration": {"Enabled": true, "MinSummonerLevel": 30},
  "player": {"summonerId": 70, "accountId": 80, "summonerLevel": 9, "inventory": [
    {"lootName": "CHEST_reed", "count": 4}, {"lootName": "MATERIAL_key", "count": 3},
    {"lootName": "CURRENCY_champion", "count": 10}, {"lootName": "CHAMPION_RENTAL_1", "count": 2},
    {"lootName": "CHAMPION_RENTAL_2", "count": 2}, {"lootName": "SKIN_1001", "count": 2},
    {"lootName": "SKIN_2001"}, {"lootName": "EMOTE_none"}, {"lootName": "BOOST_wind"}, {"lootName": "CHAMPION_2"},
    {"lootName": "CHAMPION_TOKEN_star", "refId": "1", "count": 2}]},
  "loginMessages": [{"msgId": "m1", "body": {"gameId": 1}}, {"msgId": "m2", "type": "news", "params": ["hello"]}],
  "messages": [{"name": "grant", "body": {"gameId": 3, "lootName": "CHEST_reed"}}]
}
)";

// The small world with the first `from` replaced by `to`.
inline std::string ChangedWorld(std::string_view from, std::string_view to) {
  std::string text(kSmallWorld);
  EXPECT_NE(text.find(from), std::string::npos) << from;
  return text.replace(text.find(from), from.size(), to);
}

inline JsonValue Parse(std::string_view text) {
  auto json = ReadJson(text);
  EXPECT_TRUE(json) << text;
  return json ? std::move(json.GetValue()) : JsonValue();
}

// A member as JSON text: Part(value, "session") is "null" or {"summonerId":...}.
inline std::string Part(const JsonValue& value, std::string_view name) {
  const JsonValue* member = value.Find(name);
  return member == nullptr ? "(missing)" : WriteJson(*member);
}

class WorldTest : public testing::Test {
 protected:
  void SetUp() override { Load(kSmallWorld, 301); }

  void Load(std::string_view text, uint64_t seed) {
    auto world = World::Load(text, "test.json", seed);
    ASSERT_TRUE(world) << world.GetFailure().text;
    world_ = std::move(world.GetValue());
  }

  // Cuts the text up to the first blank off, and the blank.
  static std::string_view TakeWord(std::string_view& text) {
    const auto end = std::find(text.begin(), text.end(), ' ');
    const std::string_view word(text.begin(), end);
    text.remove_prefix(std::min(word.size() + 1, text.size()));
    return word;
  }
  // "METHOD /path body"; the body may be left out.
  std::string Control(std::string_view call) {
    const std::string_view method = TakeWord(call);
    const std::string_view path = TakeWord(call);
    const std::string_view body = call;
    const WorldResponse answer = world_->Control(method, path, body);
    return answer.status == 200 ? answer.body
                                : std::to_string(answer.status) + " " + answer.message;
  }
  void SignIn() {
    Control("POST /login");
    world_->TakeEvents();
  }
  // "Update /path" for each resource event, the name for each other one; takes them.
  std::vector<std::string> Events() {
    std::vector<std::string> lines;
    for (const WorldEvent& event : world_->TakeEvents()) {
      if (event.channel == WorldEvent::Channel::kService) {
        lines.push_back(event.name);
        continue;
      }
      const JsonValue payload = Parse(event.payload);
      EXPECT_EQ(event.name, "OnJsonApiEvent_" + *payload.Find("uri")->AsText());
      lines.push_back(*payload.Find("eventType")->AsText() + " " + *payload.Find("uri")->AsText());
    }
    return lines;
  }
  WorldResponse Invoke(std::string_view method, const JsonValue::Array& arguments,
                       std::string_view service = "loot") {
    const JsonValue body =
        JsonValue::Object{{"serviceName", service}, {"methodName", method}, {"args", arguments}};
    return world_->Request("POST", "/tav-login/v1/session/invoke", "application/json",
                           WriteJson(body));
  }
  JsonValue Transact(std::string_view method, std::string_view request) {
    return Parse(Invoke(method, {"request-1", request}).body);
  }
  // `items` are loot ids with blanks between them.
  JsonValue Craft(std::string_view recipe, const std::string& items, int repeat = 1) {
    JsonValue::Array pairs;
    std::istringstream ids(items);
    for (std::string item; ids >> item;) {
      const size_t dash = std::min(item.find('-'), item.size());
      pairs.push_back(JsonValue::Object{{"lootName", item.substr(0, dash)},
                                        {"refId", item.substr(std::min(dash + 1, item.size()))}});
    }
    return Transact("craftPlayerLootWithRefId",
                    WriteJson(JsonValue::Object{
                        {"recipeName", recipe}, {"lootNameRefIds", pairs}, {"repeat", repeat}}));
  }
  // Counts by loot id, of the inventory or of a result's list.
  using CountsById = std::map<std::string, int64_t>;
  static CountsById Counts(const JsonValue& records) {
    CountsById counts;
    for (const JsonValue& record : *records.AsArray()) {
      const std::string& refId = *record.Find("refId")->AsText();
      const std::string id =
          *record.Find("lootName")->AsText() + (refId.empty() ? "" : "-" + refId);
      EXPECT_TRUE(counts.emplace(id, *record.Find("count")->AsSigned()).second) << id;
    }
    return counts;
  }
  CountsById Inventory() { return Counts(*Parse(Control("GET /world")).Find("inventory")); }

  std::unique_ptr<World> world_;
};

}  // namespace Kest::Host
