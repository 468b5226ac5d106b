#include "host/simulation/simulate_options.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdlib>
#include <string_view>

namespace Kest::Host {
namespace {

constexpr std::string_view kDots = "..";

bool ReadNumber(std::string_view text, uint64_t* number) {
  const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), *number);
  return error == std::errc() && rest == text.data() + text.size();
}

// "A..B", or "A" for one seed.
std::string ReadSeeds(const std::string& text, SimulateOptions* options) {
  const size_t dots = text.find(kDots);
  const std::string_view whole = text;
  const bool isRange = dots != std::string::npos;
  const bool isGood =
      ReadNumber(whole.substr(0, dots), &options->firstSeed) &&
      ReadNumber(isRange ? whole.substr(dots + kDots.size()) : whole, &options->lastSeed) &&
      options->firstSeed <= options->lastSeed;
  return isGood ? "" : "expected A..B with A not above B";
}

}  // namespace

SimulateCommandLine ReadSimulateCommandLine(int argc, const char* const* argv) {
  SimulateCommandLine line;
  SimulateOptions& options = line.options;
  CLI::App app(
      "Runs the loot plugin against an emulated platform, users and network on a virtual "
      "clock, by seeds.",
      "simulate");
  std::string seeds;
  app.add_option("--seeds", seeds, "The seeds to run, \"A..B\"")
      ->check([&options](const std::string& text) { return ReadSeeds(text, &options); });
  app.add_option("--steps", options.steps, "The steps of each run")->capture_default_str();
  app.add_flag("--memory", options.failMemory, "Allocations of the plugin fail, too");
  app.add_option("--walk", options.walk,
                 "Fails each allocation of this scenario in turn instead; \"all\" names all");
  app.add_option("--replay", options.replay, "Runs the script in this file instead");
  app.add_option("--expect", options.expect,
                 "The file with the hash that the seeds must have; KEST_UPDATE_GOLDEN=1 writes it");
  app.add_option("--findings", options.findings, "The folder for the scripts of findings");
  app.add_flag("--trace", options.trace, "With --replay: prints what happens");
  app.add_flag("--log", options.log, "Shows what the plugin logs, on standard error");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    line.exitCode = app.exit(error) == EXIT_SUCCESS ? EXIT_SUCCESS : 2;
  }
  return line;
}

}  // namespace Kest::Host
