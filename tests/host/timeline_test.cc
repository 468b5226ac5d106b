#include "host/timeline/timeline.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <sstream>

#include "host/cause/cause.h"
#include "host/timeline/curl_command.h"
#include "host/timeline/traffic.h"
#include "tests/support/golden.h"

namespace Kest::Host {
namespace {

using testing::HasSubstr;
using testing::Not;

TimelineRow Task(std::string name, std::string payload = "") {
  return {.kind = RowKind::kTask, .name = std::move(name), .payload = std::move(payload)};
}

TEST(Timeline, AReaderGetsEachHeldRowOnceAndLearnsWhichAreLost) {
  std::mt19937 random(301);
  const auto below = [&random](size_t bound) { return static_cast<size_t>(random()) % bound; };
  for (int round = 0; round < 300; ++round) {
    Timeline timeline([] { return int64_t{5}; },
                      {.rows = 1 + below(30), .bytes = 1 + below(9000), .payloadBytes = 40});
    uint64_t position = 0;
    uint64_t expected = 1;
    for (uint64_t added = 0; added < 60;) {
      for (size_t more = below(20); more > 0; --more) {
        ASSERT_EQ(timeline.Add(Task("t", std::string(below(100), 'x'))), ++added);
      }
      const Json page = timeline.Read({.after = position, .limit = 1 + below(12)});
      ASSERT_EQ(page["last"], added);
      if (!page["gap"].is_null()) {
        ASSERT_EQ(page["gap"]["from"], expected) << page;
        expected = page["gap"]["to"].get<uint64_t>() + 1;
      }
      for (const Json& row : page["rows"]) ASSERT_EQ(row["id"], expected++) << page;
      position = page["next"];
      ASSERT_EQ(position, expected - 1);
    }
    const Json all = timeline.Read({.after = uint64_t{1000}, .limit = 1000});
    EXPECT_EQ(all["gap"]["restarted"], true);
    EXPECT_EQ(all["rows"].front()["id"], all["first"]);
  }
}

TEST(Timeline, WhatEndsItsCauseLastsSinceThat) {
  int64_t now = 100;
  Timeline timeline([&now] { return now; });
  const uint64_t request = timeline.Add({.kind = RowKind::kRequest, .name = "asked"});
  now = 130;
  timeline.Add(Task("between"));
  now = 150;
  const CauseScope scope(request);
  timeline.Add({.kind = RowKind::kResponse, .name = "asked", .endsCause = true});
  EXPECT_EQ(timeline.Detail(3).value()["duration"], 50);
}

TEST(Timeline, EffectsAreAllThatFollowedUpToAHundred) {
  Timeline timeline([] { return int64_t{5}; });
  const auto add = [&timeline](uint64_t cause) {
    return timeline.Add({.kind = RowKind::kTask, .cause = cause});
  };
  const auto effects = [&timeline](uint64_t id) {
    const Json detail = timeline.Detail(id).value();
    std::string ids;
    for (const Json& row : detail["effects"]) ids.append(row["id"].dump()).append(" ");
    return ids.append(detail["hasMoreEffects"].get<bool>() ? "..." : "");
  };
  //  2 of 1, 3 of nothing, 4 of 2, 5 of 3, 6 of 4
  for (const uint64_t cause : {0, 1, 0, 2, 3, 4}) add(cause);
  EXPECT_EQ(effects(1), "2 4 6 ");
  EXPECT_EQ(effects(3), "5 ");
  EXPECT_EQ(effects(6), "");
  for (uint64_t id = 6; id < 103; ++id) add(id);
  EXPECT_TRUE(effects(1).ends_with(" 103 ")) << "exactly a hundred";
  add(103);
  EXPECT_TRUE(effects(1).ends_with(" 103 ...")) << effects(1);
}

TEST(Timeline, FollowsCausesThatAreHeldOnly) {
  Timeline timeline([] { return int64_t{5}; }, {.rows = 3});
  for (int i = 0; i < 5; ++i) {
    const CauseScope scope(timeline.Add(Task("outer")));
    timeline.Add(Task("inner"));
  }
  const Json detail = timeline.Detail(10).value();
  EXPECT_EQ(detail["causes"].size(), 1u);
  EXPECT_EQ(timeline.Detail(9).value()["effects"][0]["id"], 10);
  EXPECT_EQ(timeline.Detail(8).value()["causes"].size(), 0u) << "row 7 is not held";
  EXPECT_EQ(timeline.NearestCause(10, RowKind::kRequest), 0u);
  EXPECT_FALSE(timeline.Detail(7));
  EXPECT_EQ(timeline.Detail(timeline.Add({.kind = RowKind::kTask, .cause = 99})).value()["causes"],
            Json::array())
      << "no row is caused by a later one";
}

TEST(Timeline, AHiddenTokenIsNowhereToBeRead) {
  Timeline timeline([] { return int64_t{5}; }, {.payloadBytes = 40});
  std::string streamed;
  timeline.SetListener([&streamed](const std::string& row) { streamed += row; });
  const std::string token = "head\"er.payload.signature";
  timeline.Hide(token);
  timeline.Hide("short");
  for (size_t before = 0; before < 60; ++before) {
    TimelineRow row = Task("t " + token, std::string(before, 'x') + token + " short");
    row.summary = WriteJson(Json(token));
    row.kind = RowKind::kRequest;
    const Json detail = timeline.Detail(timeline.Add(row)).value();
    EXPECT_THAT(WriteJson(detail) + streamed, Not(HasSubstr("payload.sig"))) << before;
    EXPECT_THAT(WriteJson(detail["payload"]), Not(HasSubstr("head"))) << before;
  }
}

TEST(Timeline, RepeatsRequestsAsCommands) {
  EXPECT_TRUE(Testing::GoldenCases("tests/host/curl_commands.txt", [](const std::string& input) {
    std::istringstream words(input);
    TimelineRow request = {.kind = RowKind::kRequest, .name = {}};
    words >> request.method >> request.name >> request.accept >> request.payloadType;
    if (request.accept == "-") request.accept.clear();
    if (words.ignore(1)) request.payload = input.substr(static_cast<size_t>(words.tellg()));
    request.host = "localhost:8510";
    request.size = request.payload.size();
    request.isShortened = request.payloadType == "long/text";
    return CurlCommand(request);
  }));
}

// What a transaction's response may be when a fault has changed it.
TEST(Traffic, ReadsNoTransactionThatIsNone) {
  Timeline timeline([] { return int64_t{5}; });
  Ledger ledger;
  Traffic traffic(&timeline, &ledger);
  EXPECT_TRUE(Testing::GoldenCases("tests/host/ledger.txt", [&](const std::string& input) {
    const size_t line = input.find('\n');
    const std::string order = input.substr(0, line);
    const uint64_t call = traffic.AddRequest(
        "POST", "/tav-login/v1/session/invoke",
        {"", R"({"serviceName":"loot","methodName":"craftPlayerLootWithRefId","args":["r",)" +
                 WriteJson(Json(order)) + "]}"});
    const std::string result = line == std::string::npos ? "" : input.substr(line + 1);
    for (int i = 0; i < 2; ++i) {  // one that comes again counts once
      traffic.AddResponse(call, "/tav-login/v1/session/invoke", result.empty() ? 500 : 200,
                          result.empty() ? "no \"player\"" : "", {"application/json", result});
    }
    Json entry = ledger.Entries(call, std::nullopt, 10);
    EXPECT_EQ(entry.size(), 1u);
    for (const char* name : {"row", "call", "request", "time", "method"}) entry[0].erase(name);
    return WriteJson(entry[0]);
  }));
}

}  // namespace
}  // namespace Kest::Host
