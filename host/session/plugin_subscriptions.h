// Which event names the plugin follows, and the orderly way to each of its deliveries.
//
// Threads:  [task] on the scheduler's tasks, [any thread] where it says so.
// Order:    resource events of one name are delivered one after the other, in the order they came,
//           also when a delivery yields. Service events come on the service thread, which is
//           ordered by itself.
// Lifetime: once a subscription is removed no delivery of it begins. Service events need Pause
//           (service_events.h) on top before the plugin may go, for one that is running.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/mutex.h"
#include "host/tasks/scheduler.h"
#include "plugin/host_interface.h"

namespace Kest::Host {

class PluginSubscriptions {
 public:
  // `scheduler` outlives the subscriptions.
  explicit PluginSubscriptions(Scheduler* scheduler) : scheduler_(scheduler) {}

  // Whether the host offers events of this name.
  static bool IsKnown(std::string_view name);
  // The name that follows all events of the kind `name` belongs to ("OnSvdsEvent" for
  // "OnSvdsEvent_x"); `name` itself when it is such a one.
  static std::string_view KindOf(std::string_view name);

  // [task] A second subscription of a name replaces the first and takes over what is queued for it.
  void Add(std::string_view name, KestDelivery delivery, void* context);
  void Remove(std::string_view name);
  void Clear();
  // [any thread]
  std::vector<std::string> Names() const;

  // [task] Queues a resource event for the one follower of exactly this name.
  void QueueResourceEvent(std::string_view name, std::string_view payload);
  // [any thread] Delivers a service event at once to the follower of exactly this name. False: no
  // one follows it.
  bool DeliverServiceEvent(std::string_view name, std::string_view payload);

 private:
  struct Queued {
    std::string payload;
    uint64_t cause;
  };
  struct Subscription {
    std::string name;
    KestDelivery delivery;
    void* context;
    std::atomic<bool> ended = false;
    std::deque<Queued> queued;  // with the next on the scheduler's thread only
    bool delivering = false;
  };
  using Shared = std::shared_ptr<Subscription>;

  Shared Find(std::string_view name) const;
  static void DeliverQueued(const Shared& subscription);

  Scheduler* const scheduler_;
  mutable Mutex mutex_;  // a leaf: no delivery runs under it
  std::map<std::string, Shared, std::less<>> byName_ KEST_GUARDED_BY(mutex_);
};

}  // namespace Kest::Host
