// ArrivalQueue keeps arrived responses until a module task handles them, in the order in which they
// arrived: two responses that change the same data are then applied as the platform sent them, in
// any order in which the host resumes the fibers that wait for them.
//
// Threads: Arrive on any thread, the rest on module tasks. A leaf lock: nothing is called under it.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>

#include "base/mutex.h"
#include "plugin/plugin_events.h"

namespace Kest::Client {

class ArrivalQueue {
 public:
  // Must not wait.
  using Handler = std::function<void(PluginServiceProxyResponse response)>;

  struct Delivery {
    Handler handle;
    PluginServiceProxyResponse response;
  };
  // A place in the queue, made before the request is sent: arriving then needs no memory.
  using Place = std::map<uint64_t, Delivery>::node_type;

  static Place MakePlace(Handler handle);

  // REQUIRES: no other response has this arrival number.
  void Arrive(Place place, uint64_t arrival, PluginServiceProxyResponse response) noexcept
      KEST_EXCLUDES(mutex_);

  // The number of the response that arrived first; nothing when the queue is empty.
  std::optional<uint64_t> First() const KEST_EXCLUDES(mutex_);
  // REQUIRES: the queue is not empty.
  Place TakeFirst() KEST_EXCLUDES(mutex_);

  // Drops everything unhandled.
  void Clear() KEST_EXCLUDES(mutex_);

 private:
  mutable Mutex mutex_;
  std::map<uint64_t, Delivery> deliveries_ KEST_GUARDED_BY(mutex_);
};

}  // namespace Kest::Client
