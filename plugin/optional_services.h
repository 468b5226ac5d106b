// The entries of the host's service table that an older host may lack, each with what takes its
// place. `services` may be null: no host yet, or none any more. Threads: any.
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/platform.h"
#include "plugin/host_interface.h"

namespace Kest {

// The size of the smallest table that a plugin can be started with.
inline constexpr size_t kOldestTableSize = offsetof(KestHostServices, now);

// Milliseconds since 1970-01-01 00:00 UTC by the host's clock, otherwise by the system's.
int64_t HostMilliseconds(const KestHostServices* services);

// Fills `*uuid` with a fresh unique id of the host, otherwise of the system. False: there is none.
[[nodiscard]] bool CreateHostUuid(const KestHostServices* services, UuidBytes* uuid);

// What the calling code follows from, by the host's count; 0 where the host does not count.
uint64_t HostCause(const KestHostServices* services);
// Makes it what the running task follows from.
void SetHostCause(const KestHostServices* services, uint64_t cause);

}  // namespace Kest
