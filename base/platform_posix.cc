#include <errno.h>
#include <sys/random.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include "base/platform_system.h"

namespace Kest {
namespace {

int64_t ReadClock(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return static_cast<int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1'000'000;
}

}  // namespace

// The kernel's tick, as time() reads it: a few milliseconds coarse, at a fifth of the cost.
int64_t WallClockMilliseconds() {
  return ReadClock(CLOCK_REALTIME_COARSE);
}
int64_t MonotonicMilliseconds() {
  return ReadClock(CLOCK_MONOTONIC);
}

int64_t SystemZoneOffset(int64_t seconds) {
  const time_t moment = static_cast<time_t>(seconds);
  tm local{};
  return localtime_r(&moment, &local) != nullptr ? local.tm_gmtoff : 0;
}

void SystemReloadZone() {
  tzset();
}

bool CreateUuid(UuidBytes* uuid) {
  // Requests of this size are never interrupted once the random pool is up.
  if (getrandom(uuid->data(), uuid->size(), 0) != static_cast<ssize_t>(uuid->size())) return false;
  (*uuid)[6] = static_cast<uint8_t>(((*uuid)[6] & 0x0f) | 0x40);  // version 4: random
  (*uuid)[8] = static_cast<uint8_t>(((*uuid)[8] & 0x3f) | 0x80);  // the common variant
  return true;
}

uint32_t CurrentThreadId() {
  // Without a destructor, so that it outlives no unloaded library.
  static thread_local uint32_t id = 0;
  if (id == 0) id = static_cast<uint32_t>(syscall(SYS_gettid));
  return id;
}

std::string ModulePath() {
  std::string path(4096, '\0');
  const ssize_t size = readlink("/proc/self/exe", path.data(), path.size());
  path.resize(size > 0 ? static_cast<size_t>(size) : 0);
  return path;
}

std::string_view FileNameOf(std::string_view path) {
  const size_t separator = path.rfind('/');
  return separator == std::string_view::npos ? path : path.substr(separator + 1);
}

void WriteToDebugger(const char*) {}

uint32_t LastSystemError() {
  return static_cast<uint32_t>(errno);
}

}  // namespace Kest
