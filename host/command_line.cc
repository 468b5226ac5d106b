#include "host/command_line.h"

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <map>

namespace Kest::Host {
namespace {

#if defined(_WIN32)
constexpr char kPluginFile[] = "vwm-be-tav-loot.dll";
#else
constexpr char kPluginFile[] = "vwm-be-tav-loot.so";
#endif

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
  app.add_option("--plugin", options.pluginPath, "The plugin library")->capture_default_str();
  app.add_option("--world", options.worldPath, "The world file (default: the sample inside)");
  app.add_option("--address", options.address, "The address to listen on")->capture_default_str();
  app.add_option("--port", options.port, "The port to listen on, 0 for any free one")
      ->capture_default_str();
  app.add_option("--seed", options.seed, "Start of the world's random numbers")
      ->capture_default_str();
  app.add_option("--log-level", options.logLevel,
                 "Least level of the host's own lines on standard error: okay, warning, error, "
                 "always, none")
      ->transform(CLI::CheckedTransformer(levels, CLI::ignore_case));
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    line.exitCode = app.exit(error) == EXIT_SUCCESS ? EXIT_SUCCESS : EXIT_FAILURE;
  }
  return line;
}

}  // namespace Kest::Host
