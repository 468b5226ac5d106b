// What a front end's tests may count on: with a seed and a frozen clock, the same requests one
// after the other have the same effects to the byte, however long the client takes, whichever other
// clients read, and whether the auditor reads or all of it is recorded.
#include <gtest/gtest.h>

#include <atomic>
#include <charconv>
#include <deque>
#include <memory>
#include <random>
#include <thread>

#include "host/clock/time_text.h"
#include "host/development_host.h"
#include "host/record/replay.h"
#include "tests/host/loopback_client.h"
#include "tests/host/running_host.h"
#include "tests/support/temporary_folder.h"

namespace Kest::Host {
namespace {

using std::chrono::microseconds;

// "&": the request is sent, and has reached the platform's service before the next one; its
// response is taken by "join".
constexpr std::string_view kRequests[] = {
    R"(POST /_host/clock/advance {"milliseconds":1000})",
    R"(GET /tav-loot/v2/player-loot-map)",
    R"(&POST /tav-loot/v1/recipes/CHEST_lantern_OPEN/craft ["CHEST_lantern"])",
    R"(&POST /tav-loot/v1/player-loot/CHAMPION_RENTAL_13/redeem)",
    R"(PUT /_host/collections/skins/11001 {"owned":true})",
    R"(POST /_host/messages {"name":"mastery chest"})",
    R"(PUT /_host/summoner {"summonerLevel":31})",
    R"(POST /_host/clock/advance {"milliseconds":220})",
    R"(GET /tav-loot/v1/player-loot/CHAMPION_RENTAL_13)",
    R"(&POST /tav-loot/v1/refresh?force=true)",
    R"(POST /_host/clock/advance {"milliseconds":3600000})",
    R"(join)",
    R"(GET /tav-loot/v1/loot-grants)",
    R"(PUT /_host/configuration/Enabled false)",
    R"(PUT /_host/configuration/Enabled true)",
    R"(POST /tav-loot/v1/refresh)",
    R"(POST /_host/logout)",
    R"(POST /_host/login)",
    R"(POST /_host/clock/advance {"milliseconds":5000})",
    R"(GET /tav-loot/v2/player-loot-map)",
    R"(&POST /tav-loot/v1/recipes/CHEST_lantern_OPEN/craft ["CHEST_lantern"])",
    R"(POST /_host/reset)",
    R"(join)",
    R"(POST /_host/clock/advance {"milliseconds":1000})",
    R"(GET /_host/state)",
    R"(GET /_host/world)",
    R"(GET /_host/log)",
    R"(GET /_host/ledger)",
};

std::string RequestOf(std::string_view words) {
  std::string rest(words);
  const size_t path = rest.find(' ') + 1;
  const size_t body = std::min(rest.find(' ', path), rest.size());
  const std::string text = rest.substr(std::min(body + 1, rest.size()));
  return rest.substr(0, body) +
         " HTTP/1.0\r\nHost: localhost\r\nContent-Type: application/json\r\nContent-Length: " +
         std::to_string(text.size()) + "\r\n\r\n" + text;
}

class HostRun {
 public:
  HostRun(AuditMode audit, const std::string& recording) : host_(Options(audit, recording), &log_) {
    const auto started = host_.Start();
    EXPECT_TRUE(started) << started.GetFailure().text;
    const std::string line = host_.ReadyLine();
    const size_t place = line.find("\"port\":") + 7;
    std::from_chars(line.data() + place, line.data() + line.size(), port_);
  }
  ~HostRun() { EXPECT_TRUE(host_.Stop()); }

  // Follows a request of the list; returns what came, without the head.
  std::string Do(std::string_view words) {
    if (words == "join") return Join();
    const bool waits = words.starts_with('&');
    const size_t before = waits ? CountOutstanding() : 0;
    auto client = std::make_unique<LoopbackClient>(port_);
    client->Send(RequestOf(words.substr(waits ? 1 : 0)));
    if (!waits) return BodyOf(client->ReadToEnd());
    waiting_.push_back(std::move(client));
    for (int tries = 0; tries < 5000 && CountOutstanding() == before; ++tries) {
    }
    return "";
  }
  std::string Events() {
    LoopbackClient stream(port_);
    stream.Send("GET /_host/events?lastEventId=0 HTTP/1.1\r\nHost: localhost\r\n\r\n");
    return stream.ReadUpTo("\nid: " + LastId("GET /_host/health") + "\n") + stream.ReadUpTo("\n\n");
  }
  // Every row of the timeline with its payload.
  std::string Timeline() {
    std::string rows;
    const int last = std::stoi(LastId("GET /_host/timeline?limit=1"));
    for (int id = 1; id <= last; ++id) {
      rows += Do("GET /_host/timeline/" + std::to_string(id)) + "\n";
    }
    return rows;
  }

 private:
  static HostOptions Options(AuditMode audit, const std::string& recording) {
    return {.pluginPath = LOOT_PLUGIN,
            .worldPath = "",
            .port = 0,
            .seed = 7,
            .clock = {ClockMode::kFrozen, 1, ParseTime("2030-01-01T12:00:00Z")},
            .audit = audit,
            .recordPath = recording};
  }
  // The newest id that a response names.
  std::string LastId(std::string_view request) {
    const std::string text = Do(request);
    const size_t at = text.find("\"last\":") + 7;
    return text.substr(at, text.find_first_not_of("0123456789", at) - at);
  }
  static std::string BodyOf(const std::string& response) {
    return response.substr(response.find("\r\n\r\n") + 4);
  }
  std::string Join() {
    std::string text;
    for (const auto& client : waiting_) text += BodyOf(client->ReadToEnd()) + "\n";
    waiting_.clear();
    return text;
  }
  size_t CountOutstanding() {
    const std::string world = Do("GET /_host/state");
    size_t count = 0;
    for (size_t at = 0; (at = world.find("\"key\":", at)) != std::string::npos; ++at) ++count;
    return count;
  }

  HostLog log_{stderr, LogLevel::kNone};
  DevelopmentHost host_;
  uint16_t port_ = 0;
  std::deque<std::unique_ptr<LoopbackClient>> waiting_;
};

TEST(RepeatableRun, TheSameRequestsGiveTheSameBytes) {
  std::vector<std::vector<std::string>> runs(3);
  std::mt19937 random(7);
  const Testing::TemporaryFolder folder;
  const std::string recording = folder / "run.jsonl";
  for (size_t i = 0; i < runs.size(); ++i) {
    HostRun run(i == 1 ? AuditMode::kOff : AuditMode::kOn, i == 1 ? recording : "");
    std::atomic<bool> isOver = i == 0;
    std::thread noise([&] {  // another client, who only looks
      while (!isOver) {
        run.Do("GET /_host/health");
        run.Do("GET /_host/ready");
      }
    });
    for (const std::string_view request : kRequests) {
      if (i == 2) std::this_thread::sleep_for(microseconds(random() % 5000));
      runs[i].push_back(run.Do(request));
    }
    isOver = true;
    noise.join();
    runs[i].push_back(run.Timeline());
    EXPECT_NE(runs[i].back().find("craftPlayerLootWithRefId"), std::string::npos);
    runs[i].push_back(run.Events());
    EXPECT_NE(runs[i].back().find("CHAMPION_RENTAL_13"), std::string::npos);
  }
  EXPECT_EQ(runs[0], runs[1]);
  EXPECT_EQ(runs[0], runs[2]);
  const auto replayed = Replay({recording, LOOT_PLUGIN});
  ASSERT_TRUE(replayed) << replayed.GetFailure().text;
  EXPECT_EQ(replayed.GetValue().difference, "");
}

TEST(Readiness, SaysWhatTheOwnerOfAResourceRespondsWith) {
  HostOptions options;
  options.pluginPath = LOOT_PLUGIN;
  const RunningHost host(options);
  const std::pair<const char*, const char*> cases[] = {
      {R"("action":"fail","status":503)", "Its owner responds with the status 503."},
      {R"("action":"delete")", "Its owner responds with the status 404."},
      {R"("delay":0)", R"({"ready":true)"}};
  for (const auto& [fault, said] : cases) {
    host.Ask("PUT /_host/faults",
             std::string(R"({"keep":true,"rules":[{"sibling":"*emotes*",)").append(fault) + "}]}");
    host.Ask("POST /_host/reset");
    host.Ask("POST /_host/idle");
    EXPECT_NE(host.Ask("GET /_host/ready").find(said), std::string::npos) << fault;
  }
}

TEST(Readiness, ReadsAnInventoryThatNobodyHasReadOnceAndThatHasACause) {
  HostOptions options;
  options.pluginPath = LOOT_PLUGIN;
  options.scenario = "empty";
  const RunningHost host(options);
  host.Ask("POST /_host/reset");
  host.Ask("POST /_host/idle");
  EXPECT_EQ(ParseJson(host.Ask("GET /_host/ready"))["ready"], true);
  host.Ask("POST /_host/idle");
  const Json rows = ParseJson(host.Ask("GET /_host/timeline?kind=service-call&path=loot.getAll"));
  ASSERT_EQ(rows["rows"].size(), 1u) << rows;
  const std::string row = "GET /_host/timeline/" + rows["rows"][0]["id"].dump();
  EXPECT_EQ(ParseJson(host.Ask(row))["causes"].back()["name"], "first read");
  const auto look = [&host] {
    return host.Ask("GET /_host/health") + host.Ask("GET /_host/timeline");
  };
  const std::string before = look();
  host.Ask("GET /_host/ready");
  EXPECT_EQ(look(), before);
}

}  // namespace
}  // namespace Kest::Host
