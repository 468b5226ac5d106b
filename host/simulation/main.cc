// simulate: looks for what breaks the plugin when two things happen at once.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "host/audit/json_digest.h"
#include "host/simulation/allocation_walk.h"
#include "host/simulation/script_maker.h"
#include "host/simulation/seed_run.h"
#include "host/simulation/simulate_options.h"
#include "plugin/host_interface.h"

namespace {

using namespace Kest::Host;

#if defined(_WIN32)
constexpr char kNowhere[] = "NUL";
#else
constexpr char kNowhere[] = "/dev/null";
#endif

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

int Replay(const SimulateOptions& options, const Simulation::Plugin& plugin) {
  const auto script = ReadScript(ReadFile(options.replay));
  if (!script) {
    std::printf("%s: %s\n", options.replay.c_str(), script.GetFailure().text.c_str());
    return EXIT_FAILURE;
  }
  const SimulationOutcome outcome =
      Simulation(script.GetValue(), plugin, options.trace ? stdout : nullptr).Run();
  if (outcome.finding) {
    std::printf("FINDING\n%s", DescribeFinding(*outcome.finding, outcome.step).c_str());
    return EXIT_FAILURE;
  }
  std::printf("No finding in %zu steps, hash %016llx.\n", outcome.step,
              static_cast<unsigned long long>(outcome.hash));
  return EXIT_SUCCESS;
}

// Prints the finding, and keeps its script made small.
void Report(uint64_t seed, const Script& script, const ScriptResult& result,
            const SimulateOptions& options, const Simulation::Plugin& plugin) {
  std::printf("seed %llu: FINDING\n%s", static_cast<unsigned long long>(seed),
              DescribeFinding(*result.finding, result.step).c_str());
  if (options.findings.empty()) return;
  const Script smaller = ShrinkScript(script, result.finding->check, plugin);
  const std::string path = options.findings + "/seed-" + std::to_string(seed) + ".txt";
  std::ofstream(path, std::ios::binary) << WriteScript(smaller);
  std::printf("  %zu steps are left of it in %s\n", smaller.steps.size(), path.c_str());
}

// Whether the hash of the seeds is the expected one.
bool CheckHash(uint64_t hash, const std::string& path) {
  char digits[17];
  std::snprintf(digits, sizeof(digits), "%016llx", static_cast<unsigned long long>(hash));
  const std::string found = std::string(digits).append("\n");
  if (std::getenv("KEST_UPDATE_GOLDEN") != nullptr) std::ofstream(path, std::ios::binary) << found;
  if (ReadFile(path) == found) return true;
  std::printf("%s has another hash: what happens in a run has changed, or depends on the build\n",
              path.c_str());
  return false;
}

int RunSeeds(const SimulateOptions& options, const Simulation::Plugin& plugin) {
  uint64_t hash = 0;
  size_t findings = 0;
  for (uint64_t seed = options.firstSeed; seed <= options.lastSeed; ++seed) {
    const Script script = MakeScript({seed, options.steps, options.failMemory});
    const ScriptResult result = RunScript(script, plugin);
    hash = Mix(hash, result.hash);
    if (!result.finding) continue;
    ++findings;
    Report(seed, script, result, options, plugin);
  }
  std::printf("seeds %llu..%llu, %zu steps each: %zu findings, hash %016llx\n",
              static_cast<unsigned long long>(options.firstSeed),
              static_cast<unsigned long long>(options.lastSeed), options.steps, findings,
              static_cast<unsigned long long>(hash));
  const bool isExpected = options.expect.empty() || CheckHash(hash, options.expect);
  return findings == 0 && isExpected ? EXIT_SUCCESS : EXIT_FAILURE;
}

void WriteFinding(const std::string& scenario, size_t number, const WalkFinding& finding,
                  const std::string& folder) {
  std::string path = folder + "/" + scenario + "-" + std::to_string(number) + ".txt";
  std::replace(path.begin(), path.end(), ' ', '-');
  std::ofstream(path, std::ios::binary) << finding.script;
  std::printf("    script:   %s\n", path.c_str());
}

int RunWalk(const SimulateOptions& options, const Simulation::Plugin& plugin) {
  size_t runs = 0;
  size_t failures = 0;
  for (const std::string& scenario : WalkScenarios()) {
    if (options.walk != "all" && options.walk != scenario) continue;
    const WalkResult result = Walk(scenario, plugin);
    runs += result.runs;
    std::printf("%-28s %6zu allocations, %zu kinds of finding\n", scenario.c_str(), result.runs,
                result.findings.size());
    size_t number = 0;
    for (const WalkFinding& found : result.findings) {
      failures += found.runs;
      std::printf("  %6zu x %s\n    expected: %s\n    found:    %s\n", found.runs,
                  found.finding.check.c_str(), found.finding.expected.c_str(),
                  found.finding.found.c_str());
      if (!options.findings.empty()) WriteFinding(scenario, ++number, found, options.findings);
    }
  }
  std::printf("walk: %zu allocations failed, %zu findings\n", runs, failures);
  return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
  const SimulateCommandLine line = ReadSimulateCommandLine(argc, argv);
  if (line.exitCode) return *line.exitCode;
  if (!line.options.log && std::freopen(kNowhere, "w", stderr) == nullptr) return EXIT_FAILURE;
  // The first load also makes what lives as long as the process.
  Simulation::BlocksKeptByALoad(load_tav_loot);
  const Simulation::Plugin plugin{load_tav_loot, Simulation::BlocksKeptByALoad(load_tav_loot)};
  if (!line.options.walk.empty()) return RunWalk(line.options, plugin);
  return line.options.replay.empty() ? RunSeeds(line.options, plugin)
                                     : Replay(line.options, plugin);
}
