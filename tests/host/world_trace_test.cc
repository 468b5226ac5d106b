#include "tests/host/world_testing.h"

namespace Kest::Host {
namespace {

constexpr const char* kTraces[] = {"tests/host/world_trace.txt", "tests/host/faults_trace.txt"};

// Runs calls and writes down, line by line, what each returns and causes. Calls are "start", those
// of Send, "craft RECIPE REPEAT ITEM...", "redeem NAME", "invoke METHOD ARGUMENTS" and "show NAME"
// of the world's state.
class WorldTrace : public WorldTest {
 protected:
  std::string Run(const std::string& call) {
    std::istringstream words(call);
    std::string kind;
    words >> kind;
    std::string result;
    if (kind == "start") {
      Start(Testing::SourceText("tests/host/pond.json"), 301);
    } else if (kind == "craft") {
      std::string recipe;
      int repeat = 0;
      std::string items;
      std::getline(words >> recipe >> repeat, items);
      result = WriteJson(Craft(recipe, items, repeat));
    } else if (kind == "redeem") {
      std::string lootName;
      words >> lootName;
      result = WriteJson(Transact("redeemPlayerLoot", Json{{"lootName", lootName}}));
    } else if (kind == "show") {
      std::string name;
      words >> name;
      result = WriteJson(Parse(Send("GET /state").body)[name]);
    } else if (kind == "invoke") {
      std::string method;
      std::string arguments;
      std::getline(words >> method, arguments);
      const Json body = {
          {"serviceName", "loot"}, {"methodName", method}, {"args", Parse(arguments)}};
      result = Describe(Send("POST /tav-login/v1/session/invoke " + WriteJson(body)));
    } else {
      result = Describe(Send(call));
    }
    return (result.empty() ? "" : result + "\n") + Events();
  }

 private:
  static std::string Describe(const WorldResponse& response) {
    std::string when;
    if (response.delayMilliseconds > 0) {
      when = "after " + std::to_string(response.delayMilliseconds) + " ms ";
    }
    if (response.isLost) when = "lost: ";
    if (response.heldAs != 0) when = "held as " + std::to_string(response.heldAs) + ": ";
    if (response.status == 200) return when + response.body;
    return when + std::to_string(response.status) +
           (response.message.empty() ? "" : " " + response.message);
  }
  // Events of resources show no value: the trace reads those that matter. Released responses
  // follow.
  std::string Events() {
    std::string lines;
    for (const WorldEvent& event : world_->TakeEvents()) {
      Json payload = Parse(event.payload);
      if (event.channel == WorldEvent::Channel::kService) {
        lines += (event.comesFirst ? "  first, after " : "  after ") +
                 std::to_string(event.delayMilliseconds) + " ms " + event.name + " " +
                 event.payload + "\n";
        continue;
      }
      const auto uri = payload["uri"].get<std::string>();
      EXPECT_EQ(event.name, "OnJsonApiEvent_" + uri);
      lines += "  ";
      if (event.delayMilliseconds > 0) {
        lines += "after " + std::to_string(event.delayMilliseconds) + " ms ";
      }
      lines += payload["eventType"].get<std::string>() + " " + uri + "\n";
    }
    for (const ReleasedResponse& released : world_->TakeReleased()) {
      lines += "  released " + std::to_string(released.heldAs) + ": " +
               Describe(released.response) + "\n";
    }
    return lines;
  }
};

// Lines with "#" say why; "> " is a call; what follows it is the outcome.
TEST_F(WorldTrace, IsWhatTheGoldenTextHas) {
  for (const char* name : kTraces) {
    std::istringstream file(Testing::SourceText(name));
    std::string trace;
    for (std::string line; std::getline(file, line);) {
      if (line.empty() || line[0] == '#' || line[0] == '>') trace += line + "\n";
      if (line.starts_with("> ")) trace += Run(line.substr(2));
    }
    EXPECT_TRUE(Testing::GoldenText(name, trace));
  }
}

}  // namespace
}  // namespace Kest::Host
