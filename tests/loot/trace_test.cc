// The loot plugin with all that it does in one list. A file of tests/loot/traces says a story: its
// lines "# command argument .." are run one after the other, and what follows each is what the
// plugin then did: requests, subscriptions, publications, tasks posted and run, log lines and
// responses, in their order. Nothing is shown before "# begin".
#include <algorithm>
#include <functional>
#include <map>
#include <regex>
#include <sstream>

#include "base/platform.h"
#include "tests/loot/loot_plugin_fixture.h"
#include "tests/loot/token_text.h"
#include "tests/support/golden.h"

namespace Kest::Client::Loot {
namespace {

using Testing::Action;

constexpr const char* kItem = "/tav-loot/v1/player-loot/";

// `"key":value` for each of `keys` that the JSON has; a false one is left out.
std::string Fields(const std::string& json, std::initializer_list<const char*> keys) {
  std::string fields;
  for (const std::string key : keys) {
    const size_t at = json.find("\"" + key + "\":");
    if (at == std::string::npos) continue;
    const std::string field = json.substr(at, json.find_first_of(",}", at) - at);
    if (!field.ends_with(":false")) fields += field + " ";
  }
  return "{.. " + fields + "..}";
}

std::string Shorten(const std::string& text, size_t most) {
  return text.size() <= most ? text : text.substr(0, most) + "..";
}

// "call service-proxy-uuid-requests loot.redeemPlayerLoot [..]" of a request to a service's method.
std::string Call(const Action& request) {
  const std::regex pattern(R"re(\{"serviceName":"(.*?)","methodName":"(.*?)","args":(.*)\})re");
  return "call " + request.name.substr(request.name.rfind('/') + 1) + " " +
         std::regex_replace(request.detail, pattern, "$1.$2 $3");
}

class TraceTest : public LootPluginTest, public ::testing::WithParamInterface<const char*> {
 protected:
  using Words = std::istringstream;

  TraceTest() {
    host_.KeepOrder();
    SetLogos(R"({"items":{"TOURNAMENT_LOGO":[]}})");
    for (const char* file : {"profile-icons.json", "summoner-emotes.json"}) {
      RespondToGet("/tav-game-data/assets/v1/" + std::string(file), "[]");
    }
    host_.OnService("loot", "getClientConfiguration", [this](auto&) { return settings_; });
    host_.OnService("clientFacadeService", "callPersistenceMessaging", [this](auto& call) {
      const bool refused = call.find(refusedMessage_) != std::string::npos;
      return ServiceReply{"", refused ? "no such message" : "", false, refused ? 503 : 0};
    });
  }

  void SetLogos(const std::string& payload, bool held = false) {
    RespondToGet("/tav-inventory/v1/signedInventory",
                 R"({"TOURNAMENT_LOGO":")" + MakeToken(payload) + "\"}", held);
  }
  // An action as the texts have it; empty for one that they leave out.
  std::string Line(Action action) const;
  std::string TakeLines();
  void Run(const std::string& command);

  static std::string Word(Words& words) {
    std::string word;
    words >> word;
    return word;
  }
  static std::string Rest(Words& words) {
    std::string rest;
    std::getline(words >> std::ws, rest);
    return rest;
  }

  using Command = std::function<void(Words&)>;
  const std::map<std::string, Command> commands_ = {
      // How the plugin is shown.
      {"begin", [this](Words&) { begin_ = host_.Actions().size(); }},
      {"everything", [this](Words&) { isComplete_ = true; }},
      {"whole", [this](Words&) { most_ = std::string::npos; }},
      // What it is asked, and its life.
      {"start", [this](Words&) { StartPlugin(); }},
      {"stop", [this](Words&) { host_.Stop(); }},
      {"GET", [this](Words& words) { host_.Get(Word(words)); }},
      {"GETs", [this](Words& words) { GetTogether(words); }},
      {"POST", [this](Words& words) { Send("POST", words); }},
      {"DELETE", [this](Words& words) { Send("DELETE", words); }},
      {"explain", [this](Words& words) { Explain(Word(words)); }},
      {"wait", [this](Words& words) { host_.AdvanceSeconds(std::stoi(Word(words))); }},
      {"hold", [this](Words&) { host_.HoldTasks(); }},
      {"run-held", [this](Words&) { host_.RunHeldTasks(); }},
      {"release", [this](Words&) { host_.ReleaseHeld(); }},
      // The resources of others.
      {"enable", [this](Words&) { Enable(); }},
      {"set", [this](Words& words) { SetTo(Word(words), words); }},
      {"config", [this](Words& words) { SetTo(std::string(kConfig) + Word(words), words); }},
      {"remove", [this](Words& words) { host_.RemoveResource(Word(words)); }},
      {"session",
       [this](Words& words) {
         const std::string state = Word(words);
         host_.Login(std::stoul(Word(words)), state);
       }},
      {"message",
       [this](Words& words) {
         const std::string type = Word(words);
         Push(type, Rest(words));
       }},
      // What is responded from now on.
      {"found", [this](Words& words) { Respond(words, false); }},
      {"found-later", [this](Words& words) { Respond(words, true); }},
      {"logos", [this](Words& words) { SetLogos(Rest(words)); }},
      {"logos-later", [this](Words& words) { SetLogos(Rest(words), true); }},
      {"busy",
       [this](Words& words) {
         host_.OnRequest("POST", Word(words), {503, "", "busy"});
       }},
      {"busy-later",
       [this](Words& words) {
         host_.OnRequest("POST", Word(words), {503, "", "busy", "application/json", true});
       }},
      {"accept-later",
       [this](Words& words) {
         host_.OnRequest("POST", Word(words), {200, "\"uuid-9\"", "", "application/json", true});
       }},
      {"refuse", [this](Words& words) { refusedMessage_ = Rest(words); }},
      {"settings", [this](Words& words) { settings_ = {Rest(words)}; }},
      {"settings-fail", [this](Words& words) { settings_.error = Rest(words); }},
      {"result", [this](Words& words) { result_ = {Rest(words)}; }},
      {"result-later", [this](Words&) { result_.held = true; }},
      {"result-fails", [this](Words& words) { result_.error = Rest(words); }},
      {"retrieval-fails", [this](Words& words) { retrievalError_ = Rest(words); }},
      {"definitions", [this](Words& words) { definitions_ = Rest(words); }},
      {"recipes", [this](Words& words) { recipes_ = Rest(words); }},
      {"queries", [this](Words& words) { queries_ = Rest(words); }},
      {"loot", [this](Words& words) { playerLoot_ = Rest(words); }},
      {"newer", [this](Words&) { itemsVersion_ += 10; }},
  };

 private:
  static constexpr const char* kConfig = "/tav-platform-config/v1/namespaces/LootConfig/";

  void Send(const char* method, Words& words) {
    const std::string url = Word(words);
    host_.Request(method, url, Rest(words));
  }
  // Several at once, which wait for one another.
  void GetTogether(Words& words) {
    const int count = std::stoi(Word(words));
    const std::string url = Word(words);
    for (int i = 0; i < count; ++i) host_.StartRequest("GET", url);
    host_.RunUntilIdle();
  }
  // The elements of an explanation's lists on lines of their own.
  void Explain(const std::string& question) {
    host_.RunTask([&] {
      const auto& block = host_.Block();
      const KestResponse* const response = block.api->explain(block.context, ToText(question));
      const std::string text(ToView(response->body));
      explanation_ = std::to_string(response->status) + " " +
                     std::string(ToView(response->message)) +
                     std::regex_replace(text, std::regex(R"(([\[,])\{)"), "$1\n  {") + "\n";
      block.api->release(block.context, response);
    });
  }
  void SetTo(const std::string& path, Words& words) { host_.SetResource(path, Rest(words)); }
  void Respond(Words& words, bool held) {
    const std::string path = Word(words);
    RespondToGet(path, Rest(words), held);
  }

  size_t begin_ = std::string::npos;  // of the actions that were not shown yet
  bool isComplete_ = false;
  size_t most_ = 120;  // characters of a response
  std::string explanation_;
  std::string refusedMessage_ = "none";
  ServiceReply settings_{"{}"};
};

std::string TraceTest::Line(Action action) const {
  const bool isItem = action.name.find(kItem) != std::string::npos;
  switch (action.kind) {
    case Action::kStep:
      return "";  // the command says it
    case Action::kWait:
    case Action::kWaitEnd:
      return isComplete_ ? Print(action) : "";
    case Action::kLog:
      action.name =
          action.name.substr(action.name.find_first_not_of(' ', action.name.find('|') + 1));
      if (!isComplete_ && action.name.find("service proxy request:") != std::string::npos)
        return "";
      return action.level == 0 ? "" : Print(action);
    case Action::kEvent:
      if (action.name.starts_with("OnJsonApiEvent")) return "";
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
      return "response " + Shorten(action.detail, most_);
    default:
      return Print(action);
  }
}

// Items of one publication come in the order of a hash table, which differs between systems.
std::string TraceTest::TakeLines() {
  std::vector<std::string> lines;
  const std::vector<Action> actions = host_.Actions();
  for (; begin_ < actions.size(); ++begin_) {
    lines.push_back(Line(actions[begin_]));
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
  return text + std::exchange(explanation_, {});
}

void TraceTest::Run(const std::string& command) {
  Words words(command);
  const auto known = commands_.find(Word(words));
  ASSERT_NE(known, commands_.end()) << command;
  known->second(words);
}

TEST_P(TraceTest, IsAsItWas) {
  const std::string path = std::string("tests/loot/traces/") + GetParam() + ".txt";
  std::istringstream script(Testing::SourceText(path));
  std::string text;
  for (std::string line; std::getline(script, line);) {
    if (line.starts_with("##")) text += line + "\n";
    if (!line.starts_with("# ")) continue;
    Run(line.substr(2));
    const std::string lines = TakeLines();
    text += line + "\n" + lines + (lines.empty() ? "" : "\n");
  }
  EXPECT_NE(text.find("\n\n"), std::string::npos) << "nothing happened";
  EXPECT_TRUE(Testing::GoldenText(path, text));
}

INSTANTIATE_TEST_SUITE_P(Files, TraceTest,
                         ::testing::Values("calls_not_taken", "chest_notifications",
                                           "client_configuration", "craft", "dismissals",
                                           "explained_items", "explanations", "gameflow",
                                           "held_tasks", "items", "login", "login_messages",
                                           "mastery_messages", "new_player_chest", "readers",
                                           "recipe_views", "retrieval", "settings", "start", "stop",
                                           "tournament_logos", "transactions", "watched_views"),
                         [](const auto& param) { return std::string(param.param); });

}  // namespace
}  // namespace Kest::Client::Loot
