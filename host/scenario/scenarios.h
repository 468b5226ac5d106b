// Which world the host's session runs in: the start it was given, another scenario, a snapshot, a
// file that was edited. Keeps the present one on the disk when there is a folder for it.
//
// Threads: [task] on the scheduler's tasks, except the constructor.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "host/scenario/folder_lock.h"
#include "host/scenario/snapshots.h"
#include "host/scenario/world_source.h"
#include "host/session/host_log.h"
#include "host/session/session_manager.h"
#include "host/tasks/scheduler.h"

namespace Kest::Host {

class Scenarios {
 public:
  struct Options {
    WorldChoice start;
    uint64_t seed = 1;
    std::string stateFolder = {};  // empty: nothing is kept
  };
  struct Parts {  // outlive the scenarios
    Scheduler* scheduler;
    SessionManager* sessions;
    HostLog* log;
  };
  using CallControl = std::function<HttpResponse(const HttpRequest& request)>;

  Scenarios(Options options, Parts parts)
      : options_(std::move(options)), parts_(parts), snapshots_(options_.stateFolder) {}

  // Carries out the steps of a world. Set before Start.
  void SetCaller(CallControl call) { call_ = std::move(call); }

  // Begins the first session: in the world that the folder keeps, else in the start.
  Maybe<Nothing> Start();
  // Back to the start of the scenario, which is read again. When it cannot be used the session
  // that runs goes on.
  Maybe<Nothing> Reset();
  // To the start of a shipped scenario, to which a reset then goes back.
  Maybe<Nothing> Choose(const std::string& scenario);
  // Into the world of a snapshot, with a plugin that starts again.
  Maybe<Nothing> Restore(const std::string& snapshot);
  // The running world becomes what the file says; the plugin learns of it as from the platform, and
  // starts again only when names and pictures differ, which it reads when it starts.
  Maybe<Nothing> Import(const WorldText& file);
  // The start was edited: its file takes effect as Import does. A broken one changes nothing.
  void FollowFile();
  // A library was built: goes on with it in the same world. One that does not load changes nothing.
  void FollowPlugin(const Maybe<std::string>& libraryPath);
  // Writes the world into the folder, if there is one and it differs from what is there.
  void Keep(const World& world);

  // {"name", "description", "current"} of each shipped scenario.
  Json List() const;
  Snapshots& GetSnapshots() { return snapshots_; }
  // The files that the present start was read from; none for a shipped scenario.
  const std::vector<std::string>& Files() const { return files_; }

 private:
  Maybe<std::unique_ptr<World>> LoadStart();
  Maybe<std::unique_ptr<World>> Load(const WorldText& file);
  WorldReading Reading(std::vector<std::string>* warnings);
  void Warn(const std::vector<std::string>& warnings);
  Maybe<Nothing> BeginAt(std::unique_ptr<World> world);
  void RunSteps(const std::vector<ScenarioStep>& steps);
  void RunStep(const ScenarioStep& step);
  void Refresh();
  std::string KeptPath(const char* file) const { return options_.stateFolder + "/" + file; }
  Maybe<Nothing> ReadKeptStart();
  void KeepStart();

  Options options_;
  const Parts parts_;
  CallControl call_;
  std::unique_ptr<FolderLock> lock_;  // null: no world is kept
  Snapshots snapshots_;
  std::vector<std::string> files_;
  std::string kept_;  // what the folder holds
};

}  // namespace Kest::Host
