// Learns what passes between the plugin, its world and its clients.
//
// Threads: [task] on the scheduler's tasks, except where a function says otherwise.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "host/http/http_message.h"
#include "host/world/data/world_events.h"
#include "host/world/world.h"

namespace Kest::Host {

class SessionObserver {
 public:
  virtual ~SessionObserver() = default;

  // One that does nothing.
  static SessionObserver& None();

  // A plugin is about to start.
  virtual void OnBegin() {}
  // The event with this number has been added to the stream; `eventType` is one of KEST_EVENT_...,
  // `json` empty for a deletion.
  virtual void OnPublished(uint64_t /*event*/, std::string_view /*path*/, int32_t /*eventType*/,
                           std::string_view /*json*/) {}
  // The world has handled a call, of the plugin's unless `isControl`, which caused these events.
  virtual void OnWorldCall(const World& /*world*/, std::span<const WorldEvent> /*caused*/,
                           bool /*isControl*/) {}
  // A fault rule decides what happens to the call of the service, the resource of a sibling or the
  // published event of that name, before OnWorldCall.
  virtual void OnFault(std::string_view /*name*/) {}
  // A resource event reaches the plugin.
  virtual void OnResourceEvent() {}
  // [any thread] So does an event of the service, the one that follows from the row `cause`.
  virtual void OnServiceEvent(uint64_t /*cause*/) {}
  // A client's request to the plugin has its response.
  virtual void OnResponse(const HttpRequest& /*request*/, const HttpResponse& /*response*/) {}
};

inline SessionObserver& SessionObserver::None() {
  static SessionObserver none;
  return none;
}

}  // namespace Kest::Host
