#include "host/session/host_log.h"

#include <gtest/gtest.h>

#include <array>

namespace Kest::Host {
namespace {

// What is printed of one line of each kind and level, without the time: the plugin's lines as
// "p0", the host's own as "h0", the request as "r".
std::string Printed(const LogSettings& settings, bool printsPlugin) {
  std::FILE* const file = std::tmpfile();
  HostLog log(file, settings);
  log.SetClock([] { return int64_t{1'700'000'000'123}; });
  log.SetPrintsPlugin(printsPlugin);
  for (int32_t level = 0; level <= 3; ++level) {
    log.Append(static_cast<LogLevel>(level), "p" + std::to_string(level) + "\n");
    log.Write(static_cast<LogLevel>(level), "h" + std::to_string(level));
  }
  log.WriteRequest("GET", "/a\n\x1b[31m", 404, 7);
  std::rewind(file);
  std::string text;
  std::array<char, 200> line = {};
  while (std::fgets(line.data(), line.size(), file) != nullptr) {
    std::string found(line.data());
    found.pop_back();
    if (const size_t at = found.find(".123| "); at != std::string::npos) found.erase(0, at + 6);
    text += (text.empty() ? "" : "; ") + found;
  }
  std::fclose(file);
  return text;
}

TEST(HostLog, PrintsWhatItIsAskedFor) {
  constexpr char kAll[] =
      "p0;   OKAY| | tav-loot-host: h0; p1;   WARN| | tav-loot-host: h1; "
      "p2;  ERROR| | tav-loot-host: h2; p3; ALWAYS| | tav-loot-host: h3";
  const struct {
    LogSettings settings;
    bool printsPlugin;
    std::string printed;
  } kCases[] = {
      {{}, true, kAll},
      {{.requests = true}, true, std::string(kAll) + ";   OKAY| | GET /a??[31m 404 7 ms"},
      {{.least = LogLevel::kError, .isColoured = true},
       true,
       "\x1b[31mp2\x1b[0m;  ERROR| | tav-loot-host: h2\x1b[0m; p3; "
       "ALWAYS| | tav-loot-host: h3"},
      {{.onlyErrors = true, .isColoured = true}, true, "p2;  ERROR| | tav-loot-host: h2"},
      {{.least = LogLevel::kError},
       false,
       " ERROR| | tav-loot-host: h2; ALWAYS| | tav-loot-host: h3"},
      {{.least = LogLevel::kNone, .requests = true}, true, ""},
  };
  for (const auto& c : kCases) EXPECT_EQ(Printed(c.settings, c.printsPlugin), c.printed);
}

}  // namespace
}  // namespace Kest::Host
