#include <cstdio>
#include <memory>
#include <optional>

#include "host/development_host.h"
#include "host/program/command.h"
#include "host/program/host_option_definitions.h"
#include "host/program/run_host.h"
#include "host/program/stop_signal.h"
#include "host/session/host_log.h"
#include "host/session/standard_error_mute.h"

namespace Kest::Host {
namespace {

constexpr char kServeFooter[] =
    "Examples:\n"
    "  tav-loot-host                               the sample world at http://127.0.0.1:8510/\n"
    "  tav-loot-host --port 0 --seed 7             any free port; the same loot at each run\n"
    "  tav-loot-host --scenario new-player         another world of those inside\n"
    "  tav-loot-host --world shop.yaml --watch     a world of your own, followed as you edit it\n"
    "  tav-loot-host --clock 2030-01-01T12:00:00Z  time is frozen until it is advanced\n"
    "  tav-loot-host --record ticket.jsonl         for a ticket: replay shows what happened\n"
    "  tav-loot-host --allow-origin https://shop.test:3000\n"
    "Exit status: 0 stopped in order, 1 the host did not start or stop, or a strict audit found\n"
    "something, 2 wrong options.";

int Serve(const HostOptions& options) {
  std::optional<StandardErrorMute> mute;
  if (options.log.least == LogLevel::kNone) mute.emplace();
  const auto fail = [&mute](const Failure& failure) {
    mute.reset();
    return FailHost(failure);
  };
  HostLog log(stderr, options.log);
  StopSignal signal;
  if (options.untilInputCloses) signal.FollowInput();
  DevelopmentHost host(options, &log);
  host.SetFindingListener([&signal] { signal.Raise(); });
  if (const auto started = host.Start(); !started) return fail(started.GetFailure());
  std::printf("%s\n", host.ReadyLine().c_str());
  std::fflush(stdout);
  signal.Wait();
  if (const auto stopped = host.Stop(); !stopped) return fail(stopped.GetFailure());
  if (const auto finding = host.AuditFinding()) return fail({"Audit: " + *finding});
  return kSucceeded;
}

}  // namespace

RunCommand DescribeServe(CLI::App& app, const ProgramContext& context) {
  app.footer(kServeFooter);
  const auto options = std::make_shared<HostOptions>();
  AddHostOptions(app, context.folder, options.get());
  app.add_flag(
      "--until-stdin-closes", options->untilInputCloses,
      "Ends also when standard input is closed, as when the program that started this one ends");
  return [options] { return Serve(*options); };
}

}  // namespace Kest::Host
