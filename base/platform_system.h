// What each operating system provides itself; the rest of platform.h is built on it in platform.cc.
// For base/platform*.cc and their test only.
#pragma once

#include <cstdint>

#include "base/platform.h"

namespace Kest {

// Seconds to add to UTC for the local time at that moment (seconds since 1970).
int64_t SystemZoneOffset(int64_t seconds);
// Reads the time zone of the environment again.
void SystemReloadZone();

// Whether a status of Windows' UuidCreate comes with an id: success, and "unique on this machine
// only", which is all that a request id needs.
constexpr bool IsUuidStatus(int32_t status) {
  constexpr int32_t kOk = 0;
  constexpr int32_t kLocalOnly = 1824;
  return status == kOk || status == kLocalOnly;
}

}  // namespace Kest
