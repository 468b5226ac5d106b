#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
// rpc.h needs windows.h before it.
#include <rpc.h>

#include <cstring>

#include "base/platform_system.h"

namespace Kest {
namespace {

// File times count 100 ns from 1601-01-01.
constexpr int64_t kTicksPerSecond = 10'000'000;
constexpr int64_t kTicksPerMillisecond = 10'000;
constexpr int64_t kEpochTicks = 116'444'736'000'000'000;

int64_t ToTicks(const FILETIME& time) {
  return static_cast<int64_t>(static_cast<uint64_t>(time.dwHighDateTime) << 32 |
                              time.dwLowDateTime);
}

FILETIME ToFileTime(int64_t ticks) {
  FILETIME time;
  time.dwLowDateTime = static_cast<DWORD>(ticks & 0xffffffff);
  time.dwHighDateTime = static_cast<DWORD>(ticks >> 32);
  return time;
}

}  // namespace

int64_t SystemWallClockMilliseconds() {
  FILETIME now;
  GetSystemTimeAsFileTime(&now);
  return (ToTicks(now) - kEpochTicks) / kTicksPerMillisecond;
}

int64_t SystemMonotonicMilliseconds() {
  return static_cast<int64_t>(GetTickCount64());
}

int64_t SystemZoneOffset(int64_t seconds) {
  const int64_t ticks = seconds * kTicksPerSecond + kEpochTicks;
  const FILETIME moment = ToFileTime(ticks);
  SYSTEMTIME utc;
  SYSTEMTIME local;
  FILETIME localMoment;
  if (!FileTimeToSystemTime(&moment, &utc) ||
      !SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local) ||
      !SystemTimeToFileTime(&local, &localMoment)) {
    return 0;
  }
  return (ToTicks(localMoment) - ticks) / kTicksPerSecond;
}

void SystemReloadZone() {}  // the system call above reads the zone each time

bool SystemCreateUuid(UuidBytes* uuid) {
  UUID fresh;
  const RPC_STATUS status = UuidCreate(&fresh);
  // A local-only id is unique on this machine, which is all that a request id needs.
  if (status != RPC_S_OK && status != RPC_S_UUID_LOCAL_ONLY) return false;
  static_assert(sizeof(fresh) == sizeof(*uuid));
  std::memcpy(uuid->data(), &fresh, sizeof(fresh));
  return true;
}

uint32_t CurrentThreadId() {
  return GetCurrentThreadId();
}

std::string ModulePath() {
  std::string path(4096, '\0');
  const DWORD size = GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size()));
  path.resize(size < path.size() ? size : 0);
  return path;
}

std::string_view FileNameOf(std::string_view path) {
  const size_t separator = path.rfind('\\');
  return separator == std::string_view::npos ? path : path.substr(separator + 1);
}

void WriteToDebugger(const char* line) {
  OutputDebugStringA(line);
}

uint32_t LastSystemError() {
  return GetLastError();
}

}  // namespace Kest
