// The emulated platform of the development host: login, collections, game data and the platform
// service the plugin talks to. It keeps real state.
//
// Threads:  none of its own; every call comes from the scheduler's thread.
// Events:   calls put the events they cause in an outbox; the host takes and delivers them after
//           each call, in order and never from inside the call.
// Lifetime: a World is one run of the emulated platform; a reset builds a new one.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/maybe_type.h"
#include "host/world/data/world_events.h"

namespace Kest::Host {

struct Platform;

class World {
 public:
  // Reads a world file, YAML or JSON. The failure message is "file:line:column: message".
  static Maybe<std::unique_ptr<World>> Load(std::string_view text, std::string_view fileName,
                                            uint64_t seed);
  // The sample world that ships inside the program.
  static std::string_view SampleText();

  ~World();

  // Handles a request of the plugin to a sibling plugin or to a host endpoint.
  WorldResponse Request(std::string_view method, std::string_view url, std::string_view contentType,
                        std::string_view body);
  // Present value of a followed resource as JSON, or nothing. The host delivers it as "Create"
  // right after a subscription.
  std::optional<std::string> Resource(std::string_view path) const;
  // Handles a control endpoint. `path` is below "/_host": "/world", "/login", "/logout", ...
  WorldResponse Control(std::string_view method, std::string_view path, std::string_view body);
  // Reads the time in milliseconds from `now`, whose start is arbitrary, instead of from the
  // system.
  void SetClock(std::function<int64_t()> now);
  // Takes the events caused since the last call.
  std::vector<WorldEvent> TakeEvents();

 private:
  World();

  std::unique_ptr<Platform> platform_;
};

}  // namespace Kest::Host
