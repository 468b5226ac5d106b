// One load of a library in a replay: the host calls it as the recording says, and what it calls is
// compared with the recording, which also gives the results.
//
// Threads:  one.
// Lifetime: no task of the plugin runs at destruction, which closes the library.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "base/maybe_type.h"
#include "host/library/plugin_library.h"
#include "host/record/arguments.h"
#include "host/record/interposed_services.h"
#include "host/record/replay_cursor.h"

namespace Kest::Host {

class ReplayedPlugin : public InterposedServices {
 public:
  // What the plugin runs in. All outlives the plugin.
  struct Surroundings {
    ReplayCursor* cursor;
    std::function<uint64_t()> task;  // that runs now
    std::function<void()> suspend;   // leaves it until it goes on
  };

  // `load`: the crossing of the handshake.
  ReplayedPlugin(const Crossing& load, Surroundings surroundings);
  ~ReplayedPlugin() override;

  // Opens the library. Does nothing when it is open.
  Maybe<Nothing> Open(const std::string& path);
  // Calls the plugin as `crossing`, which has been taken, says, and compares what it returns. What
  // cannot be carried out ends the replay.
  void Enter(const Crossing& crossing);
  // Ends the plugin after the comparison, if it runs.
  void Stop();

 private:
  using Function = Json (ReplayedPlugin::*)(ArgumentReader& reader);
  struct Row {
    std::string_view name;
    Function function;
  };
  static const Row kFunctions[];

  Json Start(ArgumentReader& reader);
  Json StopAsRecorded(ArgumentReader& reader);
  Json Statistics(ArgumentReader& reader);
  Json SetLogging(ArgumentReader& reader);
  Json Request(ArgumentReader& reader);
  Json Invoke(ArgumentReader& reader);
  Json Explain(ArgumentReader& reader);
  Json Release(ArgumentReader& reader);
  Json Completion(ArgumentReader& reader);
  Json Delivery(ArgumentReader& reader);
  Json Task(ArgumentReader& reader);
  Json Keep(const KestResponse* response, uint64_t task);

  Served Serve(const Call& call) override;
  void Yield() override;
  void OnCompletion(Callback*, const KestResponse*) override {}
  void OnDelivery(Callback*, KestText, KestText, KestBytes) override {}
  void OnTask(Callback*) override {}

  const Json fullName_;
  const Surroundings surroundings_;
  std::unique_ptr<PluginLibrary> library_;
  std::map<uint64_t, const KestResponse*> responses_;  // by the task that returned it
  std::string problem_;                                // of the crossing that is being entered
  bool mustStop_ = false;
};

}  // namespace Kest::Host
