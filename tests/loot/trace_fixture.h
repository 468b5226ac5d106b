// The loot plugin with all that it does in one list, which a test compares with a text in
// tests/loot/traces: requests, subscriptions, publications, tasks posted and run, log lines and
// responses, in their order.
#pragma once

#include <algorithm>
#include <regex>

#include "base/platform.h"
#include "tests/loot/loot_plugin_fixture.h"
#include "tests/loot/token_text.h"
#include "tests/support/golden.h"

namespace Kest::Client::Loot {
using Testing::Action;

inline constexpr const char* kItem = "/tav-loot/v1/player-loot/";
inline constexpr const char* kSession = "/tav-login/v1/session";
inline constexpr const char* kGrantType = "championMasteryLootGrant";

// `"key":value` for each of `keys` that the JSON has; a false one is left out.
inline std::string Fields(const std::string& json, std::initializer_list<const char*> keys) {
  std::string fields;
  for (const std::string key : keys) {
    const size_t at = json.find("\"" + key + "\":");
    if (at == std::string::npos) continue;
    const std::string field = json.substr(at, json.find_first_of(",}", at) - at);
    if (!field.ends_with(":false")) fields += field + " ";
  }
  return "{.. " + fields + "..}";
}

inline std::string Shorten(const std::string& text) {
  constexpr size_t kMost = 120;
  return text.size() <= kMost ? text : text.substr(0, kMost) + "..";
}

// "call service-proxy-uuid-requests loot.redeemPlayerLoot [..]" of a request to a service's method.
inline std::string Call(const Action& request) {
  const std::regex pattern(R"re(\{"serviceName":"(.*?)","methodName":"(.*?)","args":(.*)\})re");
  return "call " + request.name.substr(request.name.rfind('/') + 1) + " " +
         std::regex_replace(request.detail, pattern, "$1.$2 $3");
}

// "ERROR| | text" of a line as it is handed to the host.
inline std::string WithoutTime(const std::string& line) {
  return line.substr(line.find_first_not_of(' ', line.find('|') + 1));
}

// An action as the texts have it; empty for one that they leave out.
inline std::string Line(Action action, bool isComplete) {
  const bool isItem = action.name.find(kItem) != std::string::npos;
  switch (action.kind) {
    case Action::kStep:
      return "\n" + Print(action);
    case Action::kWait:
    case Action::kWaitEnd:
      return isComplete ? Print(action) : "";
    case Action::kLog:
      action.name = WithoutTime(action.name);
      if (!isComplete && action.name.find("service proxy request:") != std::string::npos) return "";
      return action.level == 0 ? "" : Print(action);
    case Action::kEvent:
      if (action.name.starts_with("OnJsonApiEvent")) return "";  // the step says it
      if (action.name.starts_with("OnSvdsEvent")) {
        return "event OnSvdsEvent {.. " + action.detail.substr(action.detail.find("\"typeName\""));
      }
      return "event " + action.name + " " + Fields(action.detail, {"methodName", "error"});
    case Action::kPublish:
      if (action.detail.size() > 70 && !action.name.ends_with("/loot-grants")) {
        action.detail = isItem ? Fields(action.detail, {"count", "redeemableStatus", "isNew"})
                               : Fields(action.detail, {"version"});
      }
      return Print(action);
    case Action::kRequest:
      return action.detail.empty() ? Print(action) : Call(action);
    case Action::kResponse:
      return "response " + Shorten(action.detail);  // the step says to what
    default:
      return Print(action);
  }
}

class TraceTest : public LootPluginTest {
 protected:
  TraceTest() {
    host_.KeepOrder();
    const std::string logos = MakeToken(R"({"items":{"TOURNAMENT_LOGO":[]}})");
    RespondToGet("/tav-inventory/v1/signedInventory", R"({"TOURNAMENT_LOGO":")" + logos + "\"}");
    for (const char* file : {"profile-icons.json", "summoner-emotes.json"}) {
      RespondToGet("/tav-game-data/assets/v1/" + std::string(file), "[]");
    }
    SetUuidSourceForTests([](UuidBytes* uuid) {
      uuid->fill(0xab);
      return true;
    });
  }
  ~TraceTest() override { SetUuidSourceForTests(nullptr); }

  // What happens from here on is compared.
  void BeginTrace() { begin_ = host_.Actions().size(); }

  // Items of one publication come in the order of a hash table, which differs between systems.
  void ExpectTrace(const std::string& name, bool isComplete = false) {
    std::vector<std::string> lines;
    const std::vector<Action> actions = host_.Actions();
    for (size_t i = begin_; i < actions.size(); ++i) {
      lines.push_back(Line(actions[i], isComplete));
      const auto isItem = [](const std::string& line) {
        constexpr size_t kPath = std::string_view("publish Update ").size();
        return !line.starts_with("publish Delete") && line.find(kItem) == kPath &&
               line.find('/', kPath + std::string_view(kItem).size()) == std::string::npos;
      };
      for (size_t at = lines.size() - 1; at > 0 && isItem(lines[at]) && isItem(lines[at - 1]) &&
                                         lines[at].substr(15) < lines[at - 1].substr(15);
           --at) {
        std::swap(lines[at], lines[at - 1]);
      }
    }
    std::string text;
    for (const std::string& line : lines) text += line.empty() ? "" : line + "\n";
    EXPECT_TRUE(Testing::GoldenText("tests/loot/traces/" + name + ".txt", text));
  }

  void SetSession(const std::string& state, const std::string& summoner = "7") {
    Set(kSession, R"({"state":")" + state + R"(","summonerId":)" + summoner + R"(,"accountId":1})");
  }
  void SetSources(const std::string& summoner) {
    Set("/tav-champions/v1/inventories/" + summoner + "/champions-minimal",
        R"([{"id":11,"ownership":{"owned":true}}])");
    Set("/tav-collections/v1/inventories/" + summoner + "/ward-skins", "[]");
    Set("/tav-collections/v1/inventories/" + summoner + "/summoner-icons", R"({"icons":[1]})");
    Set("/tav-inventory/v1/inventory/emotes", "[]");
  }
  void Craft(const std::string& deltas, const char* status = "OK", const char* error = "") {
    result_ = {R"({"status":")" + std::string(status) + R"(",)" + deltas + "}", error};
    host_.Post("/tav-loot/v1/recipes/OPEN/craft", R"(["CHEST_plain"])");
  }

  size_t begin_ = 0;
};

}  // namespace Kest::Client::Loot
