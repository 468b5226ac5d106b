// Counters of the plugin runtime since start, for the host's statistics.
// Threads: any.
#pragma once

#include <atomic>
#include <cstdint>

#include "plugin/host_interface.h"

namespace Kest {

struct RuntimeCounters {
  std::atomic<uint64_t> requestsHandled{0};
  std::atomic<uint64_t> requestsFailed{0};
  std::atomic<uint64_t> eventsReceived{0};
  std::atomic<uint64_t> eventsPublished{0};
  // The process's logger counts lines since its own beginning; these are its readings at start.
  std::atomic<uint32_t> warningsAtStart{0};
  std::atomic<uint64_t> errorsAtStart{0};

  void MarkStart();
};

// Writes the fourteen words: each counter low half first, then two zero words.
void WriteStatistics(const RuntimeCounters& counters, KestStatistics* statistics);

}  // namespace Kest
