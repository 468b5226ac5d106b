#include "host/controls/clock_controls.h"

#include <algorithm>
#include <chrono>
#include <string>

#include "host/clock/time_text.h"
#include "host/http/http_responses.h"
#include "host/json/json_text.h"
#include "host/world/input/field_reader.h"

namespace Kest::Host {
namespace {

constexpr double kLeastScale = 0.001;
constexpr double kMostScale = 100'000;
constexpr int64_t kLongestAdvance = int64_t{366} * 24 * 60 * 60 * 1000;

Json ClockJson(const ClockDriver& driver) {
  const ClockSetting clock = driver.Show();
  const int64_t now = std::clamp<int64_t>(*clock.now, 0, kLatestTime);
  const auto due = driver.UntilNextDue();
  return {{"mode", ClockModeName(clock.mode)},
          {"now", FormatTime(now)},
          {"milliseconds", now},
          {"scale", clock.scale},
          {"dueIn", due ? Json(due->count()) : Json()}};
}

ClockMode ReadMode(FieldReader& fields) {
  const std::string word = fields.String("mode");
  const auto* const mode = std::find(kClockModes.begin(), kClockModes.end(), word);
  if (mode != kClockModes.end()) return static_cast<ClockMode>(mode - kClockModes.begin());
  fields.FailAt("mode",
                "\"mode\" must be \"real\", \"frozen\" or \"scaled\", found " + WriteJson(word));
  return ClockMode::kReal;
}

ClockSetting ReadSetting(FieldReader& fields) {
  ClockSetting setting;
  setting.mode = ReadMode(fields);
  const bool hasScale = fields.Find("scale") != nullptr;
  setting.scale = fields.NumberOr("scale", 1, kLeastScale, kMostScale);
  if (hasScale && setting.mode != ClockMode::kScaled) {
    fields.FailAt("scale", "only a scaled clock has a scale");
  }
  if (fields.Find("now") == nullptr) return setting;
  const std::string text = fields.String("now");
  setting.now = ParseTime(text);
  if (setting.mode == ClockMode::kReal) {
    fields.FailAt("now", "a real clock shows the time of the system");
  } else if (!setting.now) {
    fields.FailAt("now",
                  "\"now\" must be " + std::string(kTimeRule) + ", found " + WriteJson(text));
  }
  return setting;
}

Maybe<Json> SetClock(ClockDriver* driver, const HostCall& call) {
  FieldReader fields(call.body);
  const ClockSetting setting = ReadSetting(fields);
  if (!fields.Finish()) return fields.failure();
  driver->Set(setting);
  return ClockJson(*driver);
}

Maybe<Json> AdvanceClock(ClockDriver* driver, const HostCall& call) {
  FieldReader fields(call.body);
  const int64_t step = fields.Integer("milliseconds", 0, kLongestAdvance);
  if (!fields.Finish()) return fields.failure();
  const auto done = driver->Advance(std::chrono::milliseconds(step));
  if (!done) return done.GetFailure();
  return ClockJson(*driver);
}

}  // namespace

ControlGroup ClockControls(ClockDriver* driver) {
  return {
      {"GetClock",
       [driver](const HostCall&) { return JsonResponse(WriteJson(ClockJson(*driver))); }},
      {"SetClock",
       [driver](const HostCall& call) { return ControlResponse(SetClock(driver, call)); }},
      {"AdvanceClock",
       [driver](const HostCall& call) { return ControlResponse(AdvanceClock(driver, call)); }},
  };
}

}  // namespace Kest::Host
