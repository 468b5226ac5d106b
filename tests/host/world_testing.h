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
#include "tests/support/golden.h"

namespace Kest::Host {

// The small world with the first `from` replaced by `to`.
inline std::string ChangedWorld(std::string_view from, std::string_view to) {
  std::string text = Testing::SourceText("tests/host/pond.json");
  EXPECT_NE(text.find(from), std::string::npos) << from;
  return text.replace(text.find(from), from.size(), to);
}

inline Json Parse(std::string_view text) {
  Json json = Json::parse(text, nullptr, false);
  EXPECT_FALSE(json.is_discarded()) << text;
  return json;
}

class WorldTest : public testing::Test {
 protected:
  // Starts a world and signs its player in.
  void Start(std::string_view text, uint64_t seed) {
    auto world = World::Load(text, "test.json", seed);
    ASSERT_TRUE(world) << world.GetFailure().text;
    world_ = std::move(world.GetValue());
    EXPECT_TRUE(world_->TakeEvents().empty()) << "nothing has changed yet";
    Send("POST /login");
    world_->TakeEvents();
  }
  // "METHOD /path body", the body optional: a request below "/tav-", else a control.
  WorldResponse Send(std::string_view call) {
    const size_t at = call.find(' ') + 1;
    const size_t end = std::min(call.find(' ', at), call.size());
    const std::string_view method = call.substr(0, at - 1);
    const std::string_view path = call.substr(at, end - at);
    const std::string_view body = call.substr(std::min(end + 1, call.size()));
    return path.starts_with("/tav-") ? world_->Request(method, path, "application/json", body)
                                     : world_->Control(method, path, body);
  }
  // What the transaction returns. Checks that the inventory changes by that and by nothing else.
  Json Transact(std::string_view method, const Json& request) {
    CountsById expected = Inventory();
    const Json call = {{"serviceName", "loot"},
                       {"methodName", method},
                       {"args", {"request-1", WriteJson(request)}}};
    Json result = Parse(Send("POST /tav-login/v1/session/invoke " + WriteJson(call)).body);
    for (const auto& [id, count] : Counts(result["removed"])) {
      EXPECT_TRUE(count > 0 && expected[id] >= count) << id;
      expected[id] -= count;
    }
    for (const auto& [id, count] : Counts(result["added"])) expected[id] += count;
    std::erase_if(expected, [](const auto& item) { return item.second == 0; });
    EXPECT_EQ(Inventory(), expected) << result;
    return result;
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
    return Transact("craftPlayerLootWithRefId",
                    {{"recipeName", recipe}, {"lootNameRefIds", pairs}, {"repeat", repeat}});
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
  CountsById Inventory() { return Counts(Parse(Send("GET /state").body)["inventory"]); }

  std::unique_ptr<World> world_;
};

}  // namespace Kest::Host
