// Whether the plugin can know what the platform holds: what a control or a fault rule did, and a
// response that overtook another, it does not see before the next retrieval.
//
// Threads: any.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string_view>

#include "base/mutex.h"
#include "host/audit/response_ledger.h"
#include "host/world/data/inventory.h"
#include "host/world/data/world_events.h"

namespace Kest::Host {

class PlatformKnowledge {
 public:
  // A plugin starts, or what it knows is not known.
  void Reset();
  // The platform has handled a call of the plugin, or of a control, which caused these events.
  void NoteCall(const Inventory& held, std::span<const WorldEvent> caused, bool isControl);
  // A fault rule changes the next call noted. Paths are not of the platform.
  void NoteFault(std::string_view name);
  // The event that follows from this row reaches the plugin.
  void NoteArrival(uint64_t cause);

  bool IsComplete() const;

 private:
  struct Act {
    ResponseLedger::Kind kind;
    uint64_t number;
  };

  mutable Mutex mutex_;  // a leaf
  ResponseLedger ledger_ KEST_GUARDED_BY(mutex_);
  std::map<uint64_t, Act> onTheirWay_ KEST_GUARDED_BY(mutex_);  // by cause
  uint64_t held_ KEST_GUARDED_BY(mutex_) = 0;                   // a hash
  bool isChanged_ KEST_GUARDED_BY(mutex_) = false;              // by a fault rule
};

}  // namespace Kest::Host
