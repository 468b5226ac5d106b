// What each operating system answers itself; the rest of platform.h is built on it in platform.cc.
// For base/platform*.cc only.
#pragma once

#include <cstdint>

#include "base/platform.h"

namespace Kest {

int64_t SystemWallClockMilliseconds();
int64_t SystemWallClockSeconds();
int64_t SystemMonotonicMilliseconds();

// Seconds to add to UTC for the local time at that moment (seconds since 1970). Windows answers for
// the present whatever the moment: the log asks for no other.
int64_t SystemZoneOffset(int64_t seconds);
// Reads the time zone of the environment again.
void SystemReloadZone();

bool SystemCreateUuid(UuidBytes* uuid);

}  // namespace Kest
