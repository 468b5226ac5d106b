#include <cstdio>
#include <cstdlib>
#include <memory>

#include "host/development_host.h"
#include "host/program/command.h"
#include "host/program/command_runner.h"
#include "host/program/host_option_definitions.h"
#include "host/program/run_host.h"
#include "host/session/host_log.h"

namespace Kest::Host {
namespace {

constexpr int kCannotRun = 127;
constexpr char kUrlVariable[] = "LOOT_HOST_URL";

constexpr char kExecFooter[] =
    "The command finds the host's address in LOOT_HOST_URL, for example http://127.0.0.1:41873.\n"
    "Examples:\n"
    "  tav-loot-host exec -- npm test\n"
    "  tav-loot-host exec --seed 7 --world shop.yaml -- npx vitest run\n"
    "  tav-loot-host exec -- sh -c 'curl \"$LOOT_HOST_URL/_host/ready\"'\n"
    "Exit status: the command's; 128 and the signal's number when a signal ended it, 127 when it\n"
    "cannot be run, 1 when the host did not start or stop, or when a strict audit found something\n"
    "before the command ended, 2 wrong options.";

int RunBeside(DevelopmentHost& host, CommandRunner& runner,
              const std::vector<std::string>& command) {
  std::string url = host.Url();
  url.pop_back();  // so that a path can follow it
  const auto status = runner.Run(command, {{kUrlVariable, url}});
  if (status) return status.GetValue();
  ReportFailure(status.GetFailure().text);
  return kCannotRun;
}

int Execute(const HostOptions& options, const std::vector<std::string>& command) {
  CommandRunner runner;  // before any thread
  HostLog log(stderr, options.log);
  DevelopmentHost host(options, &log);
  if (const auto started = host.Start(); !started) return FailHost(started.GetFailure());
  for (const std::string& reason : host.AwaitReady()) {
    log.Write(LogLevel::kWarning, "Not ready: " + reason);
  }
  const int status = RunBeside(host, runner, command);
  if (options.audit != AuditMode::kOff) host.AwaitIdle();
  if (const auto stopped = host.Stop(); !stopped) return FailHost(stopped.GetFailure());
  if (const auto finding = host.AuditFinding()) return ReportFailure("Audit: " + *finding);
  return status;
}

}  // namespace

RunCommand DescribeExec(CLI::App& app, const ProgramContext& context) {
  app.footer(kExecFooter);
  const auto options = std::make_shared<HostOptions>();
  options->port = 0;
  AddHostOptions(app, context.folder, options.get());
  return [options, &context] { return Execute(*options, context.command); };
}

}  // namespace Kest::Host
