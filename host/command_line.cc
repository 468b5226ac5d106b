#include "host/command_line.h"

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <limits>
#include <map>

#include "host/http/request_target.h"

namespace Kest::Host {
namespace {

#if defined(_WIN32)
constexpr char kPluginFile[] = "vwm-be-tav-loot.dll";
#else
constexpr char kPluginFile[] = "vwm-be-tav-loot.so";
#endif

constexpr int kUsageError = 2;

template <typename Number>
std::string IsInteger(const std::string& text) {
  constexpr uint64_t kMost = std::numeric_limits<Number>::max();
  const auto number = ParseNumber(text);
  return number && *number <= kMost
             ? ""
             : "must be an integer from 0 to " + std::to_string(kMost) + ", found " + text;
}

constexpr char kFooter[] =
    "Examples:\n"
    "  tav-loot-host                               the sample world at http://127.0.0.1:8510/\n"
    "  tav-loot-host --port 0 --seed 7             any free port; the same loot at each run\n"
    "  tav-loot-host --world shop.yaml             a world of your own\n"
    "  tav-loot-host --allow-origin https://shop.test:3000\n"
    "Exit status: 0 stopped in order, 1 the host did not start or stop, 2 wrong options.";

}  // namespace

CommandLine ReadCommandLine(int argc, const char* const* argv,
                            const std::string& besideExecutable) {
  CommandLine line;
  HostOptions& options = line.options;
  options.pluginPath = besideExecutable + kPluginFile;
  const std::map<std::string, LogLevel> levels = {{"okay", LogLevel::kOkay},
                                                  {"warning", LogLevel::kWarning},
                                                  {"error", LogLevel::kError},
                                                  {"always", LogLevel::kAlways},
                                                  {"none", LogLevel::kNone}};
  CLI::App app("Runs the loot plugin against an emulated platform and serves it over HTTP.",
               "tav-loot-host");
  app.footer(kFooter);
  app.add_option("--plugin", options.pluginPath, "The plugin library")->capture_default_str();
  app.add_option("--world", options.worldPath, "The world file (default: the sample inside)");
  app.add_option("--address", options.address, "The address to listen on")->capture_default_str();
  app.add_option("--port", options.port, "The port to listen on, 0 for any free one")
      ->check(IsInteger<uint16_t>)
      ->capture_default_str();
  app.add_option("--seed", options.seed, "Start of the world's random numbers")
      ->check(IsInteger<uint64_t>)
      ->capture_default_str();
  app.add_flag("!--no-login", options.signsIn, "Leaves signing the player in to the first request");
  app.add_flag(
      "--until-stdin-closes", options.untilInputCloses,
      "Ends also when standard input is closed, as when the program that started this one ends");
  app.add_option("--allow-origin", options.allowedOrigins,
                 "A page of this origin may use the host, too, for example https://shop.test:3000; "
                 "repeatable")
      ->take_all();
  app.add_option("--log-level", options.logLevel,
                 "Least level of the host's own lines on standard error: okay, warning, error, "
                 "always, none")
      ->transform(CLI::CheckedTransformer(levels, CLI::ignore_case));
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    line.exitCode = app.exit(error) == EXIT_SUCCESS ? EXIT_SUCCESS : kUsageError;
  }
  return line;
}

}  // namespace Kest::Host
