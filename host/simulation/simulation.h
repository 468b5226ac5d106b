// Runs a script: the plugin against the emulated platform, on a virtual clock. Everything that
// happens follows from the script.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "host/audit/finding.h"
#include "host/audit/published_state.h"
#include "host/simulation/checks/quiet_state.h"
#include "host/simulation/log_watch.h"
#include "host/simulation/machine/virtual_scheduler.h"
#include "host/simulation/plugin_inputs.h"
#include "host/simulation/plugin_run.h"
#include "host/simulation/simulated_host.h"
#include "host/simulation/step.h"
#include "host/world/world.h"

namespace Kest::Host {

struct SimulationOutcome {
  std::optional<Finding> finding;
  size_t step = 0;    // the step with the finding, from 1; or their number
  uint64_t hash = 0;  // of all that happened; the same in every build
  bool allocationFailed = false;
};

class Simulation : private HostObserver {
 public:
  struct Plugin {
    KestLoadFunction load;
    int64_t keptBlocks = -1;  // what a load keeps on purpose; negative: not checked
  };

  // `trace` is null or gets a line for each thing that happens.
  Simulation(const Script& script, Plugin plugin, std::FILE* trace);

  // Once.
  SimulationOutcome Run();
  // Loads, starts and stops the plugin and returns how many blocks that left.
  static int64_t BlocksKeptByALoad(KestLoadFunction load);

 private:
  void OnPublish(std::string_view path, int32_t eventType, std::string_view json) override;
  void OnLog(int32_t level, std::string_view line) override;
  void OnResource(std::string_view path, std::optional<std::string_view> data) override;
  void OnRequest(std::string_view method, std::string_view url) override;
  void OnResponse(std::string_view method, std::string_view url, int32_t status) override;

  void Do(const Step& step, SeededRandom& random);
  void Ask(const Step& step);
  void ControlPlatform(const Step& step);
  void SetResponse(const Step& step);
  void Begin(SeededRandom& random);
  void Recover(SeededRandom& random);
  void End(SeededRandom& random);
  void BecomeQuiet(SeededRandom& random);
  void CheckQuiet(SeededRandom& random);
  void CompareWithFreshPlugin(SeededRandom& random);
  std::map<std::string, PluginReply, std::less<>> ReadAll(SeededRandom& random);
  PluginReply AskNow(std::string_view method, std::string_view path, SeededRandom& random);
  Json PlatformState();
  // Adds to the hash what happened in a step, and prints it.
  void Note(std::string_view what, std::string_view about, uint64_t digest);
  void Print(std::string_view what, std::string_view about, uint64_t digest);

  const Script& script_;
  const Plugin pluginCode_;
  std::FILE* const trace_;
  Findings findings_;
  PublishedState published_{&findings_};
  PluginInputs inputs_;
  LogWatch log_;
  std::unique_ptr<World> world_;
  VirtualScheduler scheduler_;
  SimulatedHost host_;
  PluginRun plugin_;
  bool isRecovered_ = true;  // what is held was retrieved after the last failed allocation
  int64_t blocksBefore_ = 0;
  uint64_t stepSum_ = 0;
};

}  // namespace Kest::Host
