#include "host/simulation/seed_run.h"

#include <algorithm>

#include "host/json/json.h"
#include "host/simulation/machine/child_process.h"

namespace Kest::Host {
namespace {

constexpr unsigned kMostSeconds = 20;
constexpr size_t kMostShrinkRuns = 1'500;

std::string WriteOutcome(const SimulationOutcome& outcome) {
  Json json = {
      {"step", outcome.step}, {"hash", outcome.hash}, {"failed", outcome.allocationFailed}};
  if (outcome.finding) {
    json["check"] = outcome.finding->check;
    json["expected"] = outcome.finding->expected;
    json["found"] = outcome.finding->found;
    json["path"] = outcome.finding->path;
  }
  return WriteJson(json);
}

}  // namespace

ScriptResult RunScript(const Script& script, const Simulation::Plugin& plugin) {
  const ChildResult child = RunInChild(
      [&] { return WriteOutcome(Simulation(script, plugin, nullptr).Run()); }, kMostSeconds);
  ScriptResult result;
  if (!child.failure.empty()) {
    result.finding = {"the process goes on", "the end of the run", child.failure};
    result.step = script.steps.size();
    result.allocationFailed = true;  // or it would not have ended so, in all likelihood
    return result;
  }
  const Json outcome = ParseJson(child.text);
  result.step = outcome["step"].get<size_t>();
  result.hash = outcome["hash"].get<uint64_t>();
  result.allocationFailed = outcome["failed"].get<bool>();
  if (outcome.contains("check")) {
    result.finding = {outcome["check"].get<std::string>(), outcome["expected"].get<std::string>(),
                      outcome["found"].get<std::string>(), outcome["path"].get<std::string>()};
  }
  return result;
}

Script ShrinkScript(Script script, const std::string& check, const Simulation::Plugin& plugin) {
  size_t runs = 0;
  const auto stillFails = [&](const Script& smaller) {
    const ScriptResult result = RunScript(smaller, plugin);
    return ++runs < kMostShrinkRuns && result.finding && result.finding->check == check;
  };
  for (size_t length = std::max<size_t>(1, script.steps.size() / 2); length > 0;) {
    bool anyLeftOut = false;
    for (size_t first = 0; first < script.steps.size() && runs < kMostShrinkRuns;) {
      Script smaller = script;
      const auto begin = smaller.steps.begin() + static_cast<std::ptrdiff_t>(first);
      const size_t count = std::min(length, script.steps.size() - first);
      smaller.steps.erase(begin, begin + static_cast<std::ptrdiff_t>(count));
      if (stillFails(smaller)) {
        script = std::move(smaller);
        anyLeftOut = true;
      } else {
        first += count;
      }
    }
    if (length == 1 && !anyLeftOut) break;
    if (length > 1) length /= 2;
    if (runs >= kMostShrinkRuns) break;
  }
  return script;
}

std::string DescribeFinding(const Finding& finding, size_t step) {
  const std::string where = finding.path.empty() ? "" : " at " + finding.path;
  return "  step " + std::to_string(step) + ": " + finding.check + where +
         "\n    expected: " + finding.expected + "\n    found:    " + finding.found + "\n";
}

}  // namespace Kest::Host
