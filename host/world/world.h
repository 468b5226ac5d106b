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
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/maybe_type.h"
#include "host/faults/fault_rules.h"
#include "host/world/data/inventory.h"
#include "host/world/data/world_events.h"
#include "host/world/file/world_file.h"

namespace Kest::Host {

struct Platform;

class World {
 public:
  // What differs after Adopt.
  enum class Change {
    kEvents,    // what is followed has been reported, the rest is seen at the next retrieval
    kGameData,  // names and pictures too, which a plugin reads when it starts
  };

  // Reads a world file, YAML or JSON. The failure message is "file:line:column: message".
  static Maybe<std::unique_ptr<World>> Load(const WorldText& file, const WorldReading& reading);
  static Maybe<std::unique_ptr<World>> Load(std::string_view text, std::string_view fileName,
                                            uint64_t seed);
  // The sample world that ships inside the program.
  static std::string_view SampleText();

  ~World();

  // Handles a request of the plugin to a sibling plugin or to a host endpoint.
  WorldResponse Request(std::string_view method, std::string_view url, std::string_view contentType,
                        std::string_view body);
  // The event "Create" with the present value of a resource, which the host delivers right after a
  // subscription; nothing when there is no such resource.
  std::optional<WorldEvent> PresentValue(std::string_view path);
  // What the owner of a resource responds to its followers: 200, 404 when there is none, or the
  // status with which a fault rule kept its newest value back.
  int FollowedStatus(std::string_view path) const;
  // What a page finds at a decoded path of a sibling plugin: its resource as JSON, or a picture
  // that things of the world name, drawn. Status 404 when there is neither.
  WorldResponse SiblingPage(std::string_view path) const;
  // Handles a control endpoint. `path` is below "/_host": "/world", "/login", "/logout", ...
  WorldResponse Control(std::string_view method, std::string_view path, std::string_view body);
  // Reads the time in milliseconds from `now`, whose start is arbitrary, instead of from the
  // system.
  void SetClock(std::function<int64_t()> now);
  // Signs in the player whom the world's file says, or its own when it leaves that open and
  // `byDefault`. Called once the plugin has started.
  void SignInAtStart(bool byDefault);
  // For another plugin in the same world: who is signed in is so again after SignInAtStart.
  void BeginAgain();
  // The calls that the world's file wants made at its start.
  const std::vector<ScenarioStep>& Steps() const;
  // What the player holds.
  const Inventory& Held() const;
  // The present world as the text of a world file, JSON.
  std::string File() const;
  // The world becomes what `file` says; who is signed in stays so unless the file says otherwise. A
  // file that cannot be used changes nothing. Returns what a running plugin cannot learn of.
  Maybe<Change> Adopt(const WorldText& file, const WorldReading& reading);

  // Takes the events caused since the last call.
  std::vector<WorldEvent> TakeEvents();
  // Takes the responses of held requests that a control has let go since the last call.
  std::vector<ReleasedResponse> TakeReleased();
  // What the fault rules do to the next event that the plugin publishes for `path`.
  std::optional<CallFault> PublishedFault(std::string_view path);
  // `listener` learns of each fault that a rule causes.
  void FollowFaults(FaultRules::Listener listener);
  // The fault rules that are to hold after a reset, as the body of their control; empty: none.
  std::string KeptFaults() const;

 private:
  World();
  // The event as the fault rules let it pass; nothing when they keep it back.
  std::optional<WorldEvent> Passed(WorldEvent event);

  std::unique_ptr<Platform> platform_;
  std::map<std::string, int, std::less<>> keptBack_;  // statuses by path, of the world's resources
};

}  // namespace Kest::Host
