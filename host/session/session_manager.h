// Keeps the one plugin session of the host and replaces it on a reset.
//
// Threads: [task] on the scheduler's tasks, except where a function says otherwise.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "base/maybe_type.h"
#include "host/session/plugin_session.h"

namespace Kest::Host {

class SessionManager {
 public:
  using MakeWorld = std::function<Maybe<std::unique_ptr<World>>()>;

  // `makeWorld` builds a world at its start, the same one each time. `signsIn`: each session begins
  // with the player signed in.
  SessionManager(std::string libraryPath, MakeWorld makeWorld, bool signsIn,
                 PluginSession::Surroundings surroundings);

  // Makes the world, loads the plugin and starts it.
  Maybe<Nothing> Start();
  // Stops the plugin and closes its library. Does nothing without a session.
  void Stop();
  // Stop and Start in one step: requests that come meanwhile wait for the new session. When no
  // world can be made the session that runs goes on.
  Maybe<Nothing> Reset();

  // The running session, after waiting for a change under way; null when there is none. Valid until
  // the caller yields outside the plugin.
  PluginSession* Current();

  // [any thread] Called by the service events' thread, which is paused while sessions change.
  void DeliverServiceEvent(const ServiceEventThread::Event& event);

 private:
  void BeginChange();
  Maybe<Nothing> OpenSession(std::unique_ptr<World> world);
  void CloseSession();

  const std::string libraryPath_;
  const MakeWorld makeWorld_;
  const bool signsIn_;
  const PluginSession::Surroundings surroundings_;
  std::unique_ptr<PluginSession> session_;
  bool changing_ = false;
};

}  // namespace Kest::Host
