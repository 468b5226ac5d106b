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

#include "base/mutex.h"
#include "base/platform_system.h"

namespace Kest {
namespace {

// File times count 100 ns from 1601-01-01.
constexpr int64_t kTicksPerMillisecond = 10'000;
constexpr int64_t kEpochTicks = 116'444'736'000'000'000;

int64_t ToTicks(const FILETIME& time) {
  return static_cast<int64_t>(static_cast<uint64_t>(time.dwHighDateTime) << 32 |
                              time.dwLowDateTime);
}

CRITICAL_SECTION* SectionIn(unsigned char* storage) {
  return reinterpret_cast<CRITICAL_SECTION*>(storage);
}

}  // namespace

int64_t WallClockMilliseconds() {
  FILETIME now;
  GetSystemTimeAsFileTime(&now);
  return (ToTicks(now) - kEpochTicks) / kTicksPerMillisecond;
}

int64_t MonotonicMilliseconds() {
  return static_cast<int64_t>(GetTickCount64());
}

int64_t SystemZoneOffset(int64_t seconds) {
  const int64_t ticks = kEpochTicks + seconds * 1000 * kTicksPerMillisecond;
  const FILETIME moment = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
  SYSTEMTIME utc;
  SYSTEMTIME local;
  FILETIME localTime;
  if (!FileTimeToSystemTime(&moment, &utc) ||
      !SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local) ||
      !SystemTimeToFileTime(&local, &localTime)) {
    return 0;
  }
  return (ToTicks(localTime) - ticks) / kTicksPerMillisecond / 1000;
}

void SystemReloadZone() {}  // the system call above reads the zone each time

bool CreateUuid(UuidBytes* uuid) {
  UUID fresh;
  const RPC_STATUS status = UuidCreate(&fresh);
  static_assert(IsUuidStatus(RPC_S_OK) && IsUuidStatus(RPC_S_UUID_LOCAL_ONLY));
  if (!IsUuidStatus(status)) return false;
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

static_assert(sizeof(Mutex) >= sizeof(CRITICAL_SECTION));
static_assert(alignof(Mutex) >= alignof(CRITICAL_SECTION));

Mutex::Mutex() {
  // Without the debug record, which would outlive a mutex that is never destroyed. Cannot fail.
  InitializeCriticalSectionEx(SectionIn(section_), 0, CRITICAL_SECTION_NO_DEBUG_INFO);
}

Mutex::~Mutex() {
  DeleteCriticalSection(SectionIn(section_));
}

void Mutex::Lock() {
  EnterCriticalSection(SectionIn(section_));
}

void Mutex::Unlock() {
  LeaveCriticalSection(SectionIn(section_));
}

bool Mutex::TryLock() {
  CRITICAL_SECTION* const section = SectionIn(section_);
  // The system lets the owner in again; this mutex does not.
  const HANDLE self = ULongToHandle(GetCurrentThreadId());
  return section->OwningThread != self && TryEnterCriticalSection(section) != FALSE;
}

}  // namespace Kest
