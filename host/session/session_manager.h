// Keeps the one plugin session of the host and replaces it: by one in another world, or by one of
// another library in the same world.
//
// Threads: [task] on the scheduler's tasks, except where a function says otherwise.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "base/maybe_type.h"
#include "host/session/plugin_session.h"

namespace Kest::Host {

class SessionManager {
 public:
  // `signsIn`: a session begins with the player signed in, unless its world decides that.
  SessionManager(std::string libraryPath, bool signsIn, PluginSession::Surroundings surroundings);

  // Stops the plugin and closes its library, if there is a session, and begins one in `world`, as
  // one step: requests that come meanwhile wait for the new session. A reset is published.
  Maybe<Nothing> Begin(std::unique_ptr<World> world);
  // The same in the world of the present session, with the library, or its copy, at `libraryPath`
  // from now on.
  // A library that cannot be loaded changes nothing.
  Maybe<Nothing> BeginAgain(const std::string& libraryPath);
  // Stops the plugin and closes its library. Does nothing without a session.
  void Stop();

  // The running session, after waiting for a change under way; null when there is none. Valid until
  // the caller yields outside the plugin.
  PluginSession* Current();
  const std::string& libraryPath() const { return libraryPath_; }
  // A copy of the library, for the sessions that begin from now on.
  void SetLibraryPath(std::string path) { libraryPath_ = std::move(path); }

  // How many sessions there have been: that of the running one.
  uint64_t Number() const { return number_; }

  // [any thread] Called by the service events' thread, which is paused while sessions change.
  void DeliverServiceEvent(const ServiceEventThread::Event& event);

 private:
  void BeginChange();
  Maybe<std::unique_ptr<PluginLibrary>> Open(const std::string& libraryPath);
  Maybe<Nothing> OpenSession(std::unique_ptr<PluginLibrary> library, std::unique_ptr<World> world);
  std::unique_ptr<World> CloseSession();

  const std::string builtPath_;  // what messages name, also of a copy
  std::string libraryPath_;
  const bool signsIn_;
  const PluginSession::Surroundings surroundings_;
  std::unique_ptr<PluginSession> session_;
  uint64_t number_ = 0;
  bool changing_ = false;
};

}  // namespace Kest::Host
