#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <utility>

#include "host/clock/time_text.h"
#include "host/fixtures/fixture_files.h"
#include "host/program/command.h"
#include "host/program/host_option_definitions.h"
#include "host/program/run_host.h"
#include "host/scenario/atomic_file.h"
#include "host/session/standard_error_mute.h"

namespace Kest::Host {
namespace {

constexpr char kExportFooter[] =
    "Examples:\n"
    "  tav-loot-host export fixtures --scenario every-status\n"
    "  tav-loot-host export fixtures --world shop.yaml --output src/fixtures --force\n"
    "The same plugin, world, seed and time give the same files.\n"
    "Exit status: 0 the files are there, 1 they are not, 2 wrong options.";
constexpr char kDefaultTime[] = "2030-01-01T12:00:00Z";

struct ExportOptions {
  std::string what;
  HostOptions host;
  std::string folder = "loot-fixtures";
  bool replaces = false;
};

// Runs a host for as long as it takes.
Maybe<FixtureSet> Record(const HostOptions& options) {
  const StandardErrorMute mute;  // what goes wrong is returned
  HostLog log(stderr, LogLevel::kNone);
  DevelopmentHost host(options, &log);
  if (const auto started = host.Start(); !started) return started.GetFailure();
  auto recorded = RecordFixtures(host);
  if (const auto stopped = host.Stop(); !stopped) return stopped.GetFailure();
  return recorded;
}

Maybe<Nothing> CheckFolder(const std::string& folder, bool mayHoldFiles) {
  std::error_code error;
  if (!std::filesystem::exists(folder, error)) return Nothing{};
  if (!std::filesystem::is_directory(folder, error)) return Failure{folder + " is not a folder."};
  const bool isEmpty = std::filesystem::is_empty(folder, error);
  if (error) return Failure{"Cannot read " + folder + ": " + error.message()};
  if (isEmpty || mayHoldFiles) return Nothing{};
  return Failure{folder + " is not empty; with --force the files in it are replaced."};
}

Maybe<Nothing> WriteFiles(const std::string& folder, const std::vector<FixtureFile>& files) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) return Failure{"Cannot make the folder " + folder + ": " + error.message()};
  for (const FixtureFile& file : files) {
    const std::string path = (std::filesystem::path(folder) / file.name).string();
    if (auto written = WriteFileAtomically(path, file.text); !written) return written;
  }
  return Nothing{};
}

std::string OriginOf(const HostOptions& options) {
  std::string origin = "Made by tav-loot-host " KEST_VERSION " export fixtures: ";
  if (options.worldPath.empty()) {
    origin.append("scenario ").append(options.scenario);
  } else {
    origin.append("world ").append(std::filesystem::path(options.worldPath).filename().string());
  }
  return origin.append(", seed ").append(std::to_string(options.seed)) + ".";
}

int Export(const ExportOptions& options) {
  const auto usable = CheckFolder(options.folder, options.replaces);
  if (!usable) return ReportFailure(usable.GetFailure().text);
  const auto recorded = Record(options.host);
  if (!recorded) return FailHost(recorded.GetFailure());
  HostOptions sample = options.host;  // it has something of every type
  sample.worldPath.clear();
  sample.scenario = HostOptions().scenario;
  const auto other = Record(sample);
  if (!other) return FailHost(other.GetFailure());
  const FixtureSet& set = recorded.GetValue();
  const auto files = FixtureFiles(set, other.GetValue(), OriginOf(options.host));
  const auto written = WriteFiles(options.folder, files);
  if (!written) return ReportFailure(written.GetFailure().text);
  size_t count = 0;
  for (const FixtureRoute& route : set.routes) count += route.calls.size();
  std::printf("%s: %zu responses of %zu routes\n", options.folder.c_str(), count,
              set.routes.size());
  return kSucceeded;
}

}  // namespace

RunCommand DescribeExport(CLI::App& app, const ProgramContext& context) {
  app.footer(kExportFooter);
  const auto options = std::make_shared<ExportOptions>();
  options->host.port = 0;
  options->host.clock = {ClockMode::kFrozen, 1, ParseTime(kDefaultTime)};
  app.add_option("what", options->what, "What is written")
      ->required()
      ->type_name("fixtures")
      ->check(CLI::IsMember({"fixtures"}).description(""));
  AddRepeatableOptions(app, context.folder, &options->host);
  app.add_option("--output", options->folder, "The folder for the files")
      ->type_name("DIR")
      ->capture_default_str();
  app.add_flag("--force", options->replaces, "Replaces the files that are in the folder");
  return [options] { return Export(*options); };
}

}  // namespace Kest::Host
