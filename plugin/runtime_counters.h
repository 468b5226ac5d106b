// Counters of the plugin runtime since start, for the host's statistics.
// Threads: any.
#pragma once

#include <atomic>
#include <cstdint>

#include "plugin/host_interface.h"

namespace Kest {

struct RuntimeCounters {
  std::atomic<uint64_t> requestsAnswered{0};
  std::atomic<uint64_t> requestsFailed{0};
  std::atomic<uint64_t> eventsReceived{0};
  std::atomic<uint64_t> eventsPublished{0};
  std::atomic<uint64_t> warningsLogged{0};  // lines the plugin's log target handed to the host
  std::atomic<uint64_t> errorsLogged{0};
};

// Writes the fourteen words: each counter low half first, then two zero words.
void WriteStatistics(const RuntimeCounters& counters, KestStatistics* statistics);

}  // namespace Kest
