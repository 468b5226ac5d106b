// The auditor: silent while the plugin is right, and it names what is not. Fault rules for
// published events make a plugin of which a front end sees something wrong.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "host/world/file/shipped_worlds.h"
#include "tests/host/running_host.h"

namespace Kest::Host {
namespace {

using testing::HasSubstr;

constexpr char kMap[] = "/tav-loot/v1/player-loot-map";
constexpr char kVersionedMap[] = "/tav-loot/v2/player-loot-map";
constexpr char kChest[] = "/tav-loot/v1/player-loot/CHEST_lantern";
constexpr char kMenu[] = "/tav-loot/v1/player-loot/CHEST_lantern/context-menu";

// A host whose time passes fast.
class AuditedHost : public RunningHost {
 public:
  explicit AuditedHost(AuditMode mode)
      : RunningHost({.pluginPath = LOOT_PLUGIN,
                     .worldPath = "",
                     .seed = 7,
                     .clock = {ClockMode::kScaled, 1000, {}},
                     .audit = mode}) {}

  // The audit's report once the host is idle after these requests.
  Json After(const std::vector<std::string>& requests) const {
    AwaitIdle();
    for (const std::string& request : requests) {
      const size_t body = std::min(request.find(' ', request.find(' ') + 1), request.size());
      Ask(request.substr(0, body), request.substr(std::min(body + 1, request.size())));
      AwaitIdle();
    }
    return ParseJson(Ask("GET /_host/audit"));
  }
  void AwaitIdle() const { EXPECT_EQ(Ask("POST /_host/idle"), R"({"idle":true})"); }
};

// What is published by then, and all that an item can go through.
const std::vector<std::string> kActions = {
    "GET /tav-loot/v2/player-loot-map",
    "GET /tav-loot/v1/player-loot/CHEST_lantern/context-menu",
    "POST /tav-loot/v1/recipes/initial-item/MATERIAL_key_fragment",
    "GET /tav-loot/v1/recipes/configuration",
    R"(POST /tav-loot/v1/recipes/CHEST_lantern_OPEN/craft ["CHEST_lantern"])",
    R"(POST /tav-loot/v1/recipes/MATERIAL_key_FORGE/craft?repeat=2 ["MATERIAL_key_fragment"])",
    "POST /tav-loot/v1/player-loot/CHAMPION_RENTAL_13/redeem",
    "DELETE /tav-loot/v1/player-loot/CURRENCY_cosmetic/new-notification",
    R"(PUT /_host/collections/skins/11001 {"owned":true})",
    R"(PUT /_host/gameflow {"phase":"InProgress"})",
    R"(POST /_host/messages {"name":"mastery chest"})",
    R"(PUT /_host/gameflow {"phase":null})",
    "DELETE /tav-loot/v1/loot-grants/0",
    "PUT /_host/configuration/Enabled false",
    "PUT /_host/configuration/Enabled true",
    R"(POST /_host/inventory {"lootName":"CHEST_lantern","delta":30})",
    "GET /tav-loot/v1/player-loot/CHEST_lantern",
    "POST /tav-loot/v1/refresh?force=true",
    "POST /_host/logout",
    "POST /_host/login",
    "POST /tav-loot/v1/refresh?force=true",
};

TEST(Audit, FindsNothingInAnyScenario) {
  const AuditedHost host(AuditMode::kOn);
  for (const std::string_view name : ShippedWorldNames()) {
    SCOPED_TRACE(name);
    host.Ask("POST /_host/scenario/" + std::string(name));
    const Json report = host.After(kActions);
    EXPECT_EQ(report["findings"], Json::array());
    EXPECT_GE(report["runs"], kActions.size() / 2);
    const bool isRetrieved = name != "service-down";
    EXPECT_EQ(report["last"]["values"], isRetrieved ? 5 : 4);
    EXPECT_EQ(report["last"]["items"] > 0, isRetrieved);
    EXPECT_EQ(report["last"]["platform"], isRetrieved);
  }
}

TEST(Audit, KnowsEveryRouteThatCanBeRead) {
  const AuditedHost host(AuditMode::kOff);
  std::set<std::string> known;
  const Json audit = ParseJson(host.Ask("GET /_host/audit"));
  for (const Json& route : audit["routes"]) {
    known.insert(route["path"].get<std::string>());
    EXPECT_TRUE(route["compared"] == true || route.contains("because")) << route["path"];
  }
  std::set<std::string> readable;
  const Json index = ParseJson(host.Ask("GET /"));
  for (const Json& endpoint : index["endpoints"]) {
    if (endpoint["method"] == "GET") readable.insert(endpoint["path"].get<std::string>());
  }
  EXPECT_EQ(known, readable);
}

struct FaultCase {
  const char* why;
  const char* path;  // of the published events
  const char* action;
  const char* check;
  const char* foundAt;
};

TEST(Audit, FindsWhatAFrontEndWouldSeeWrong) {
  const FaultCase kCases[] = {
      {"an item's event is missing", kChest, "drop", "the items published add up to the map",
       kVersionedMap},
      {"an item's event comes twice", kChest, "double", "an event brings a change", kChest},
      {"a map's event is missing", kMap, "drop", "the two maps of a publication agree",
       kVersionedMap},
      {"a map's event comes twice", kMap, "double", "an event brings a change", kMap},
      {"the versioned map's event is missing", kVersionedMap, "drop", "a change is published",
       kVersionedMap},
      {"the versioned map's event comes twice", kVersionedMap, "double",
       "the version grows by one with each publication", kVersionedMap},
      {"all of a publication is missing", "/tav-loot/*/player-loot*", "drop",
       "the items published add up to those returned", kMap},
      {"a menu's event is missing", kMenu, "drop", "a change is published", kMenu},
      {"a value's event is missing", "/tav-loot/v1/enabled", "drop", "a change is published",
       "/tav-loot/v1/enabled"},
      {"a value's event comes twice", "/tav-loot/v1/enabled", "double", "an event brings a change",
       "/tav-loot/v1/enabled"},
  };
  const AuditedHost host(AuditMode::kOn);
  for (const FaultCase& c : kCases) {
    SCOPED_TRACE(c.why);
    host.Ask("POST /_host/reset");
    const std::string rule = R"({"rules":[{"published":")" + std::string(c.path) +
                             R"(","action":")" + c.action + R"("}]})";
    const Json before = host.After({std::string("GET ") + kMenu});
    const Json report = host.After({
        "PUT /_host/faults " + rule,
        R"(POST /tav-loot/v1/recipes/CHEST_lantern_OPEN/craft ["CHEST_lantern"])",
        R"(POST /tav-loot/v1/recipes/CHEST_lantern_OPEN/craft ["CHEST_lantern"])",
        "PUT /_host/configuration/Enabled false",
    });
    const size_t first = before["findings"].size();
    ASSERT_GT(report["findings"].size(), first);
    const Json& finding = report["findings"][first];
    EXPECT_EQ(finding["check"], c.check);
    EXPECT_EQ(finding["path"], c.foundAt);
    EXPECT_NE(finding["expected"], finding["found"]);
    EXPECT_EQ(finding["event"].is_null(), c.foundAt == std::string_view(kMenu)) << "the last one";
  }
}

TEST(Audit, IsSwitchedWhileItRuns) {
  const AuditedHost host(AuditMode::kOff);
  const std::string craft =
      R"(POST /tav-loot/v1/recipes/CHEST_lantern_OPEN/craft ["CHEST_lantern"])";
  EXPECT_EQ(host.After({craft})["runs"], 0);
  EXPECT_THAT(host.Ask("PUT /_host/audit", R"({"mode":"loud"})"),
              HasSubstr(R"(\"mode\" must be \"off\", \"on\" or \"strict\", found \"loud\")"));
  Json report = host.After(
      {R"(PUT /_host/audit {"mode":"strict"})", craft, "POST /tav-loot/v1/refresh?force=true"});
  EXPECT_GE(report["runs"], 2);
  EXPECT_EQ(report["found"], 0);
  EXPECT_EQ(report["last"]["platform"], true);
  EXPECT_FALSE(host.Host().AuditFinding());
  report =
      host.After({R"(PUT /_host/faults {"rules":[{"published":"*","action":"drop"}]})",
                  "PUT /_host/configuration/Enabled false", R"(PUT /_host/audit {"mode":"off"})"});
  EXPECT_EQ(report["mode"], "off");
  ASSERT_TRUE(host.Host().AuditFinding());
  EXPECT_THAT(*host.Host().AuditFinding(), HasSubstr(report["findings"][0]["check"]));
}

}  // namespace
}  // namespace Kest::Host
