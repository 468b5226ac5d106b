#include "host/session/clock_driver.h"

#include <algorithm>
#include <string>

#include "host/clock/time_text.h"

namespace Kest::Host {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kLimit{30'000};  // of the system's time

}  // namespace

void ClockDriver::Set(const ClockSetting& setting) {
  clock_->Set(setting);
  serviceEvents_->NoteClock();
  AddRow();
}

Maybe<Nothing> ClockDriver::Advance(milliseconds step) {
  if (!clock_->IsFrozen()) return Failure{"The clock runs; only a frozen one is advanced.", 409};
  if (step.count() > kLatestTime - clock_->Now()) {
    return Failure{"The clock ends at " + FormatTime(kLatestTime) + ".", 400};
  }
  const HostTime end = clock_->Elapsed() + step;
  const auto giveUp = steady_clock::now() + kLimit;
  while (steady_clock::now() < giveUp && scheduler_->WaitUntilSettled(kLimit)) {
    const HostTime next = std::min(NextDue().value_or(end), end);
    if (next <= clock_->Elapsed() && clock_->Elapsed() >= end) return Nothing{};
    clock_->MoveTo(next);
    AddRow();
  }
  return Failure{"Still busy after " + std::to_string(kLimit.count()) + " ms.", 504};
}

void ClockDriver::AddRow() {
  const ClockSetting clock = clock_->Show();
  timeline_->Add({.kind = RowKind::kClock,
                  .name = std::string(ClockModeName(clock.mode)),
                  .summary = FormatTime(*clock.now)});
}

std::optional<milliseconds> ClockDriver::UntilNextDue() const {
  const auto due = NextDue();
  if (!due) return std::nullopt;
  return std::max(milliseconds(0), std::chrono::ceil<milliseconds>(*due - clock_->Elapsed()));
}

std::optional<HostTime> ClockDriver::NextDue() const {
  const auto task = scheduler_->NextDue();
  const auto event = serviceEvents_->NextDue();
  if (!task || !event) return task ? task : event;
  return std::min(*task, *event);
}

}  // namespace Kest::Host
