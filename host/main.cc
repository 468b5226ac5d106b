// tav-loot-host: the development host of the loot plugin.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "base/platform.h"
#include "host/command_line.h"
#include "host/development_host.h"
#include "host/session/host_log.h"
#include "host/stop_signal.h"

namespace {

using namespace Kest::Host;

std::string FolderOfThisProgram() {
  const std::string path = Kest::ModulePath();
  return path.substr(0, path.size() - Kest::FileNameOf(path).size());
}

// Says what failed. Does not come back when tasks of the plugin still run: nothing may be taken
// from under them.
int Fail(const Kest::Failure& failure) {
  std::fprintf(stderr, "tav-loot-host: %s\n", failure.text.c_str());
  if (failure.status == DevelopmentHost::kTooLate) std::_Exit(EXIT_FAILURE);
  return EXIT_FAILURE;
}

int RunHost(const HostOptions& options) {
  HostLog log(stderr, options.logLevel);
  StopSignal signal;
  if (options.untilInputCloses) signal.FollowInput();
  DevelopmentHost host(options, &log);
  if (const auto started = host.Start(); !started) return Fail(started.GetFailure());
  std::printf("%s\n", host.ReadyLine().c_str());
  std::fflush(stdout);
  signal.Wait();
  if (const auto stopped = host.Stop(); !stopped) return Fail(stopped.GetFailure());
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  const CommandLine line = ReadCommandLine(argc, argv, FolderOfThisProgram());
  return line.exitCode ? *line.exitCode : RunHost(line.options);
}
