// A small world (pond.json) and the calls that tests of the emulated platform make on it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "host/json/json.h"
#include "host/json/json_text.h"
#include "host/world/world.h"

namespace Kest::Host {

// One definition of each kind a test needs.
extern const std::string_view kSmallWorld;

// The small world with the first `from` replaced by `to`.
inline std::string ChangedWorld(std::string_view from, std::string_view to) {
  std::string text(kSmallWorld);
  EXPECT_NE(text.find(from), std::string::npos) << from;
  return text.replace(text.find(from), from.size(), to);
}

inline Json Parse(std::string_view text) {
  Json json = Json::parse(text, nullptr, false);
  EXPECT_FALSE(json.is_discarded()) << text;
  return json;
}

// A member as JSON text: Part(value, "session") is "null" or {"summonerId":...}.
inline std::string Part(const Json& value, const char* name) {
  return value.contains(name) ? WriteJson(value[name]) : "(missing)";
}

class WorldTest : public testing::Test {
 protected:
  void SetUp() override { Load(kSmallWorld, 301); }

  void Load(std::string_view text, uint64_t seed) {
    auto world = World::Load(text, "test.json", seed);
    ASSERT_TRUE(world) << world.GetFailure().text;
    world_ = std::move(world.GetValue());
  }
  // "METHOD /path body"; the body may be left out.
  std::string Control(std::string_view call) {
    const size_t path = call.find(' ') + 1;
    const size_t body = std::min(call.find(' ', path), call.size());
    const WorldResponse response =
        world_->Control(call.substr(0, path - 1), call.substr(path, body - path),
                        call.substr(std::min(body + 1, call.size())));
    return response.status == 200 ? response.body
                                  : std::to_string(response.status) + " " + response.message;
  }
  void SignIn() {
    Control("POST /login");
    world_->TakeEvents();
  }
  // "Update /path" for each resource event, the name for each other one; takes them.
  std::vector<std::string> Events() {
    std::vector<std::string> lines;
    for (const WorldEvent& event : world_->TakeEvents()) {
      lines.push_back(event.name);
      if (event.channel == WorldEvent::Channel::kService) continue;
      const Json payload = Parse(event.payload);
      const std::string uri = payload["uri"].get<std::string>();
      EXPECT_EQ(event.name, "OnJsonApiEvent_" + uri);
      lines.back() = payload["eventType"].get<std::string>() + " " + uri;
    }
    return lines;
  }
  WorldResponse Invoke(std::string_view method, const Json& arguments,
                       std::string_view service = "loot") {
    const Json body = {{"serviceName", service}, {"methodName", method}, {"args", arguments}};
    return world_->Request("POST", "/tav-login/v1/session/invoke", "application/json",
                           WriteJson(body));
  }
  Json Transact(std::string_view method, std::string_view request) {
    return Parse(Invoke(method, {"request-1", request}).body);
  }
  // `items` are loot ids with spaces between them.
  Json Craft(std::string_view recipe, const std::string& items, int repeat = 1) {
    Json pairs = Json::array();
    std::istringstream ids(items);
    for (std::string item; ids >> item;) {
      const size_t dash = std::min(item.find('-'), item.size());
      pairs.push_back({{"lootName", item.substr(0, dash)},
                       {"refId", item.substr(std::min(dash + 1, item.size()))}});
    }
    const Json request = {{"recipeName", recipe}, {"lootNameRefIds", pairs}, {"repeat", repeat}};
    return Transact("craftPlayerLootWithRefId", WriteJson(request));
  }
  // Counts by loot id, of the inventory or of a result's list.
  using CountsById = std::map<std::string, int64_t>;
  static CountsById Counts(const Json& records) {
    CountsById counts;
    for (const Json& record : records) {
      const auto refId = record["refId"].get<std::string>();
      const auto id = record["lootName"].get<std::string>() + (refId.empty() ? "" : "-" + refId);
      EXPECT_TRUE(counts.emplace(id, record["count"].get<int64_t>()).second) << id;
    }
    return counts;
  }
  CountsById Inventory() { return Counts(Parse(Control("GET /world"))["inventory"]); }

  std::unique_ptr<World> world_;
};

}  // namespace Kest::Host
