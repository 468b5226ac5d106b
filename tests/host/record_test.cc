// What a recording is for: a plugin that does the same is equal to it, one that does anything else
// is reported at the right line. The recordings are changed here in the place of the plugin.
#include <gtest/gtest.h>

#include <charconv>
#include <fstream>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "host/development_host.h"
#include "host/record/arguments.h"
#include "host/record/replay.h"
#include "host/record/token_cut.h"
#include "tests/host/loopback_client.h"
#include "tests/support/temporary_folder.h"

namespace Kest::Host {
namespace {

using Lines = std::vector<std::string>;

// A short session with the service's events on their own thread: sign-in, two crafts side by side,
// a reset, which loads the library again.
void PlaySession(const std::string& path) {
  HostLog log(stderr, LogLevel::kNone);
  DevelopmentHost host(
      {.pluginPath = LOOT_PLUGIN, .worldPath = "", .port = 0, .seed = 7, .recordPath = path}, &log);
  EXPECT_TRUE(host.Start());
  uint16_t port = 0;
  const std::string ready = host.ReadyLine();
  const char* const number = ready.data() + ready.find("\"port\":") + 7;
  std::from_chars(number, ready.data() + ready.size(), port);
  const auto send = [](LoopbackClient& client, std::string_view line, std::string_view body) {
    std::string request(line);
    request.append(" HTTP/1.0\r\nHost: localhost\r\nContent-Type: application/json\r\n");
    request.append("Content-Length: ").append(std::to_string(body.size())).append("\r\n\r\n");
    EXPECT_TRUE(client.Send(request.append(body)));
  };
  EXPECT_EQ(host.AwaitReady(), std::vector<std::string>{});
  LoopbackClient craft(port), redeem(port), reset(port);
  send(craft, "POST /tav-loot/v1/recipes/CHEST_lantern_OPEN/craft", R"(["CHEST_lantern"])");
  send(redeem, "POST /tav-loot/v1/player-loot/CHAMPION_RENTAL_13/redeem", "");
  EXPECT_NE(craft.ReadToEnd().find("200 OK"), std::string::npos);
  EXPECT_NE(redeem.ReadToEnd().find("200 OK"), std::string::npos);
  send(reset, "POST /_host/reset", "");
  EXPECT_NE(reset.ReadToEnd().find("200 OK"), std::string::npos);
  EXPECT_TRUE(host.Stop());
}

Lines RecordSession() {
  const Testing::TemporaryFolder folder;
  const std::string path = folder / "session.jsonl";
  PlaySession(path);
  std::ifstream file(path, std::ios::binary);
  Lines lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  EXPECT_FALSE(lines.empty());
  return lines;
}

const Lines& Session() {
  static const Lines lines = RecordSession();
  return lines;
}

// Of the first line with `text`, at `from` or later; counted from 0.
size_t Find(const Lines& lines, std::string_view text, size_t from = 0) {
  for (size_t i = from; i < lines.size(); ++i) {
    if (lines[i].find(text) != std::string::npos) return i;
  }
  ADD_FAILURE() << "no line with " << text;
  return 0;
}

void Replace(std::string* line, std::string_view from, std::string_view to) {
  const size_t at = line->find(from);
  ASSERT_NE(at, std::string::npos) << from;
  line->replace(at, from.size(), to);
}

struct Replayed {
  Maybe<ReplayOutcome> outcome;
  std::string path;
};

Replayed ReplayLines(const Lines& lines, bool comparesLog = true, std::string_view end = "\n") {
  const Testing::TemporaryFolder folder;
  const std::string path = folder / "changed.jsonl";
  std::ofstream file(path, std::ios::binary);
  for (size_t i = 0; i < lines.size(); ++i) {
    file << lines[i] << (i + 1 < lines.size() ? std::string_view("\n") : end);
  }
  file.close();
  return {Replay({path, LOOT_PLUGIN, comparesLog}), path};
}

std::string FailureOf(const Replayed& replayed) {
  return replayed.outcome ? "none" : replayed.outcome.GetFailure().text;
}

TEST(Record, ThePluginDoesTheSameAgain) {
  const Replayed replayed = ReplayLines(Session());
  ASSERT_TRUE(replayed.outcome) << FailureOf(replayed);
  EXPECT_EQ(replayed.outcome.GetValue().difference, "");
  EXPECT_EQ(replayed.outcome.GetValue().sessions, 2U);
  EXPECT_EQ(replayed.outcome.GetValue().crossings, Session().size() - 1);
  EXPECT_FALSE(replayed.outcome.GetValue().isCut);
  Find(Session(), R"("thread":"service event")");
  Find(Session(), ".(masked)");
}

constexpr char kPublishMap[] = R"("call":"publish","args":{"path":"/tav-loot/v1/player-loot-map")";

TEST(Record, TheFirstDifferenceIsReportedAtItsLine) {
  const struct {
    const char* why;
    std::function<size_t(Lines*)> change;  // returns the line of the difference, from 0
    const char* expected;
    const char* found;
  } kCases[] = {
      {"an event that the plugin publishes is not in the recording",
       [](Lines* lines) {
         const size_t at = Find(*lines, kPublishMap);
         lines->erase(lines->begin() + static_cast<ptrdiff_t>(at));
         return at;
       },
       "Expected: ", kPublishMap},
      {"two events in another order",
       [](Lines* lines) {
         const size_t at = Find(*lines, kPublishMap);
         const size_t next = Find(*lines, R"("call":"publish")", at + 1);
         std::string& one = (*lines)[at];
         std::string& other = (*lines)[next];
         const std::string head = one.substr(0, one.find(R"("to":)"));
         const std::string otherHead = other.substr(0, other.find(R"("to":)"));
         std::swap(one, other);
         Replace(&one, otherHead, head);
         Replace(&other, head, otherHead);
         return at;
       },
       R"("path":"/tav-loot/v2/player-loot-map")", kPublishMap},
      {"another argument of a call of the service",
       [](Lines* lines) {
         const size_t at = Find(*lines, R"(methodName\":\"craftPlayerLootWithRefId)");
         Replace(&(*lines)[at], "craftPlayerLootWithRefId", "craftPlayerLoot");
         return at;
       },
       R"(craftPlayerLoot\")", "craftPlayerLootWithRefId"},
      {"another response to the host",
       [](Lines* lines) {
         const size_t at = Find(*lines, R"("return":"request","result":{"status":200)");
         Replace(&(*lines)[at], R"("status":200)", R"("status":404)");
         return at;
       },
       R"("status":404)", R"("status":200)"},
      {"another line in the log",
       [](Lines* lines) {
         const size_t at = Find(*lines, "Loot enabled");
         Replace(&(*lines)[at], "Loot enabled", "Loot disabled");
         return at;
       },
       "Loot disabled", "Loot enabled"},
      {"a task waits that did not",
       [](Lines* lines) {
         const size_t at = Find(*lines, R"("call":"yield")");
         lines->erase(lines->begin() + static_cast<ptrdiff_t>(at));
         return at;
       },
       R"("return":"yield")", R"("call":"yield")"},
      {"a task goes on that does not wait",
       [](Lines* lines) {
         const size_t at = Find(*lines, R"("return":"yield")");
         Replace(&(*lines)[at], R"("task":)", R"("task":9)");
         return at;
       },
       R"("return":"yield")", "nothing; every task of the plugin waits or has ended"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.why);
    Lines lines = Session();
    const size_t place = c.change(&lines);
    const Replayed replayed = ReplayLines(lines);
    ASSERT_TRUE(replayed.outcome) << FailureOf(replayed);
    const std::string& report = replayed.outcome.GetValue().difference;
    EXPECT_TRUE(report.starts_with(replayed.path + ":" + std::to_string(place + 1) + ": "))
        << place + 1 << " " << report;
    const size_t found = report.find("\nFound: ");
    EXPECT_LT(report.find(c.expected, report.find("\nExpected: ")), found) << report;
    EXPECT_NE(report.find(c.found, found), std::string::npos) << report;
    EXPECT_FALSE(replayed.outcome.GetValue().isAbandoned);
  }
}

TEST(Record, ADifferenceToAnotherWidthIsExplained) {
  Lines lines = Session();
  lines.erase(lines.begin() + static_cast<ptrdiff_t>(Find(lines, kPublishMap)));
  for (const size_t bits : {sizeof(void*) * 8, size_t{16}}) {
    const Replayed replayed = ReplayLines(lines);
    ASSERT_TRUE(replayed.outcome) << FailureOf(replayed);
    const std::string& report = replayed.outcome.GetValue().difference;
    EXPECT_EQ(report.find("\nThe recording is of a 16-bit host") != report.npos, bits == 16);
    Replace(&lines[1], "\"bits\":" + std::to_string(bits), "\"bits\":16");
  }
}

TEST(Record, WhatMayDifferIsNoDifference) {
  const struct {
    const char* why;
    std::function<void(Lines*)> change;
    bool comparesLog;
  } kCases[] = {
      {"the plugin asks for the time more often",
       [](Lines* lines) {
         std::string last;
         std::erase_if(*lines, [&last](const std::string& line) {
           if (line.find(R"("call":"now")") == line.npos) return false;
           return std::exchange(last, line.substr(line.find("result"))) == last;
         });
       },
       true},
      {"another time zone",
       [](Lines* lines) { Replace(&(*lines)[Find(*lines, "Loot enabled")], "T", "U"); }, true},
      {"log lines that are not compared",
       [](Lines* lines) {
         Replace(&(*lines)[Find(*lines, "Loot enabled")], "enabled", "there");
         lines->erase(lines->begin() + static_cast<ptrdiff_t>(Find(*lines, "Loot ready")));
       },
       false},
      {"the recording ends early", [](Lines* lines) { lines->resize(lines->size() / 2); }, true},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.why);
    Lines lines = Session();
    c.change(&lines);
    const Replayed replayed = ReplayLines(lines, c.comparesLog);
    ASSERT_TRUE(replayed.outcome) << FailureOf(replayed);
    EXPECT_EQ(replayed.outcome.GetValue().difference, "");
    EXPECT_EQ(replayed.outcome.GetValue().isCut, lines.size() < Session().size() * 3 / 4);
    EXPECT_FALSE(replayed.outcome.GetValue().isAbandoned);
  }
}

TEST(Record, WhatIsNoRecordingIsRefusedWithItsLine) {
  const std::string head = Session()[0];
  const std::string load = Session()[1];
  const auto enter = [](std::string_view call, std::string_view arguments) {
    std::string line = R"({"n":2,"task":2,"thread":"task","session":1,"to":"plugin","call":")";
    line.append(call).append(R"(","args":)").append(arguments);
    return line.append("}");
  };
  const struct {
    const char* why;
    Lines lines;
    const char* failure;  // after the path
  } kCases[] = {
      {"empty", {}, ":1: this is not a recording of tav-loot-host"},
      {"another file", {"[1]"}, ":1: this is not a recording of tav-loot-host"},
      {"younger",
       {R"({"recording":"tav-loot-host","format":2})"},
       ":1: the recording has the format 2; this program reads 1"},
      {"no JSON", {head, "n"}, ":2: not a line of a recording: no JSON"},
      {"deep", {head, std::string(99, '[')}, ":2: not a line of a recording: too deep"},
      {"no object", {head, "[]"}, ":2: not a line of a recording: not a JSON object"},
      {"no number",
       {head, R"({"n":-1})"},
       ":2: not a line of a recording: \"n\" must be a number above 0"},
      {"backwards",
       {head, load, load},
       ":3: not a line of a recording: \"n\" must be above that of the line before"},
      {"no session",
       {head, load, R"({"n":2,"task":2,"thread":"task","to":"plugin","call":"x"})"},
       ":3: not a line of a recording: a call of the plugin needs \"session\""},
      {"not begun",
       {head, enter("start", "{}")},
       ":2: not a line of a recording: this session has not begun"},
      {"unknown function",
       {head, load, enter("open", "{}")},
       ":3: not a line of a recording: the plugin has no \"open\""},
      {"no argument",
       {head, load, enter("request", "{}")},
       ":3: not a line of a recording: \"method\" must be a string, or an object with \"base64\""},
      {"bad base64",
       {head, load, enter("explain", R"({"question":{"base64":"a"}})")},
       ":3: not a line of a recording: \"question\" must be a string, or an object with "
       "\"base64\""},
      {"no response",
       {head, load, enter("release", R"({"of":1})")},
       ":3: not a line of a recording: there is no such response to release"},
      {"no task",
       {head, load, enter("task", R"({"of":1})")},
       ":3: not a line of a recording: there is no such task to run"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.why);
    const Replayed replayed = ReplayLines(c.lines);
    EXPECT_EQ(FailureOf(replayed), replayed.path + c.failure);
  }
  Lines torn(Session().begin(), Session().begin() + 20);
  const Replayed replayed = ReplayLines(torn, true, "");
  EXPECT_EQ(
      FailureOf(replayed),
      replayed.path + ":20: the line is torn: it has no end. Without it the rest can be used");
  EXPECT_EQ(Replay({"/no/such/file", LOOT_PLUGIN}).GetFailure().text,
            "Cannot read the recording /no/such/file");
  const std::string other = Session()[1];
  Lines foreign = {head, other, Session()[2]};
  Replace(&foreign[1], "vwm-be-tav-loot", "other");
  EXPECT_EQ(FailureOf(ReplayLines(foreign)), "The plugin " + std::string(LOOT_PLUGIN) +
                                                 " is \"vwm-be-tav-loot\", the recording is of "
                                                 "\"other\"");
}

TEST(Record, BytesAreKept) {
  for (const std::string_view bytes :
       {"", "plain", "\xff", "\xfe\xff", "a\xffz", "\xed\xa0\x80\x01"}) {
    const Json json = {{"bytes", BytesJson(bytes)}};
    ArgumentReader reader(json);
    EXPECT_EQ(reader.Bytes("bytes"), bytes);
    EXPECT_EQ(reader.Problem(), "");
  }
}

TEST(Record, SignaturesOfTokensAreMasked) {
  const struct {
    const char* text;
    const char* masked;
  } kCases[] = {
      {R"-({"A":"aGk=.aGk=.c2VjcmV0"})-", R"-({"A":"aGk=.aGk=.(masked)"})-"},
      {R"-(["a.b.c\/-_","d.e","f..g"])-", R"-(["a.b.(masked)","d.e","f..(masked)"])-"},
      {"a.b.c.d", "a.b.(masked)"},
      {R"-({"A":"a.b.c)-", R"-({"A":"a.b.(masked))-"},
      {"no token. None.", "no token. None."},
  };
  for (const auto& c : kCases) EXPECT_EQ(WithoutSignatures(c.text), c.masked);
}

}  // namespace
}  // namespace Kest::Host
