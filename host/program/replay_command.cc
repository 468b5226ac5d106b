#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "host/program/command.h"
#include "host/program/host_option_definitions.h"
#include "host/record/replay.h"

namespace Kest::Host {
namespace {

constexpr char kReplayFooter[] =
    "A recording is what a host that was started with --record has written.\n"
    "Examples:\n"
    "  tav-loot-host replay ticket.jsonl                      the library beside the program\n"
    "  tav-loot-host replay ticket.jsonl --plugin other.so    another build of it\n"
    "Exit status: 0 the plugin did the same, 1 it did something else, 2 wrong options, or no\n"
    "recording or library that can be used.";

// "350 crossings in 1 session, all equal."
std::string Summary(const ReplayOutcome& outcome) {
  std::string text = std::to_string(outcome.crossings);
  text.append(" crossings in ").append(std::to_string(outcome.sessions));
  text.append(outcome.sessions == 1 ? " session" : " sessions").append(", all equal");
  return text.append(outcome.isCut ? "; it ends before the plugin was stopped." : ".");
}

int RunReplay(const ReplayOptions& options) {
  const auto replayed = Replay(options);
  if (!replayed) {
    ReportFailure(replayed.GetFailure().text);
    return kUsageError;
  }
  const ReplayOutcome& outcome = replayed.GetValue();
  const bool isEqual = outcome.difference.empty();
  if (isEqual) {
    std::printf("%s: %s\n", options.recording.c_str(), Summary(outcome).c_str());
  } else {
    std::printf("%s", outcome.difference.c_str());
  }
  std::fflush(stdout);
  const int status = isEqual ? kSucceeded : kFailed;
  if (outcome.isAbandoned) std::_Exit(status);
  return status;
}

}  // namespace

RunCommand DescribeReplay(CLI::App& app, const ProgramContext& context) {
  app.footer(kReplayFooter);
  const auto options = std::make_shared<ReplayOptions>();
  app.add_option("file", options->recording, "The recording")->required()->type_name("FILE");
  AddPluginOption(app, context.folder, &options->plugin);
  app.add_flag("!--ignore-log", options->comparesLog,
               "The lines that the plugin logs may be others");
  return [options] { return RunReplay(*options); };
}

}  // namespace Kest::Host
