// ArrivalQueue keeps arrived responses until a module task handles them, in the order in which they
// arrived: two responses that change the same data are then applied as the platform sent them, in
// any order in which the host resumes the fibers that wait for them. A response is read on the
// thread that brought it, after it has got its place.
//
// Threads: Arrive and Read on any thread, the rest on module tasks. A leaf lock: nothing is called
//          under it.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>

#include "base/mutex.h"
#include "plugin/plugin_events.h"

namespace Kest::Client {

// What becomes of a response. It is made before the request is sent.
class ResponseHandler {
 public:
  virtual ~ResponseHandler() = default;
  // Reads the response. Once, on any thread, under no lock.
  virtual void Read(PluginServiceProxyResponse response) noexcept = 0;
  // Does a part of what the response is for, and returns whether that was the last one. On module
  // tasks, after Read; must not wait.
  virtual bool Handle() noexcept = 0;
};

class ArrivalQueue {
 public:
  struct Delivery {
    std::unique_ptr<ResponseHandler> handler;
    PluginServiceProxyResponse response;  // empty once it is read
    bool isRead = false;                  // guarded by the queue's lock
    uint64_t cause = 0;                   // what handling it follows from, by the host's count
  };
  // A place in the queue, made before the request is sent: arriving then needs no memory.
  using Place = std::map<uint64_t, std::shared_ptr<Delivery>>::node_type;

  static Place MakePlace(std::unique_ptr<ResponseHandler> handler);

  // REQUIRES: no other response has this arrival number.
  void Arrive(Place place, uint64_t arrival, PluginServiceProxyResponse response) noexcept
      KEST_EXCLUDES(mutex_);
  // Has a response that has arrived read; it can be taken then.
  void Read(const std::shared_ptr<Delivery>& delivery) noexcept KEST_EXCLUDES(mutex_);

  // The number of the response that arrived first; nothing when it has not been read yet, or the
  // queue is empty.
  std::optional<uint64_t> First() const KEST_EXCLUDES(mutex_);
  // REQUIRES: First returns a number.
  Place TakeFirst() KEST_EXCLUDES(mutex_);

  // Drops everything unhandled.
  void Clear() KEST_EXCLUDES(mutex_);

 private:
  mutable Mutex mutex_;
  std::map<uint64_t, std::shared_ptr<Delivery>> deliveries_ KEST_GUARDED_BY(mutex_);
};

}  // namespace Kest::Client
