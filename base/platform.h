// The platform layer, all calls to the operating system: clocks, unique ids, thread and module
// names, the debugger. Threads: every function may be called on any thread. Nothing here logs and
// nothing throws, except std::bad_alloc where a std::string is returned.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Kest {

// ---- Clocks ------------------------------------------------------------------------------------

// A wall clock reading in the local time zone.
struct LocalTime {
  int32_t year = 0;   // 2024
  int32_t month = 0;  // 1 to 12
  int32_t day = 0;    // 1 to 31
  int32_t hour = 0;
  int32_t minute = 0;
  int32_t second = 0;
  int32_t millisecond = 0;

  friend bool operator==(const LocalTime&, const LocalTime&) = default;
};

// Time since 1970-01-01 00:00 UTC, in steps of the system's tick (1 to 16 ms). It may jump when the
// user sets the clock.
int64_t WallClockMilliseconds();

// A wall clock reading in the local zone. Asks the system for the zone: keep the result while the
// second lasts if you need many.
LocalTime LocalTimeAt(int64_t wallMilliseconds);

// Milliseconds on a clock that never goes back; its start is arbitrary.
int64_t MonotonicMilliseconds();

// Milliseconds on the monotonic clock since this function was called first in the process; never
// negative, whichever threads call.
int64_t MillisecondsSinceFirstUse();

// ---- Unique ids --------------------------------------------------------------------------------

using UuidBytes = std::array<uint8_t, 16>;

// Fills `*uuid` with a fresh unique id. False: the system gave none, `*uuid` is unspecified.
[[nodiscard]] bool CreateUuid(UuidBytes* uuid);

// 32 lower-case hexadecimal digits in the groups 8-4-4-4-12, in the order of the bytes.
std::string FormatUuid(const UuidBytes& uuid);

// ---- Process -----------------------------------------------------------------------------------

// The system's number of the calling thread.
uint32_t CurrentThreadId();

// The full path of the running executable; empty when the system does not say.
std::string ModulePath();

// The part of a path after its last separator of this system.
std::string_view FileNameOf(std::string_view path);

// Hands one NUL-terminated line to an attached debugger. Does nothing where there is no such way.
void WriteToDebugger(const char* line);

// The calling thread's last system error code.
uint32_t LastSystemError();

}  // namespace Kest
