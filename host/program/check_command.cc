#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <vector>

#include "host/program/command.h"
#include "host/program/terminal.h"
#include "host/scenario/world_source.h"
#include "host/session/host_log.h"

namespace Kest::Host {
namespace {

constexpr char kCheckFooter[] =
    "Examples:\n"
    "  tav-loot-host check shop.yaml               one line \"file:line:column: ...\" for each "
    "finding\n"
    "  tav-loot-host check --strict worlds/*.yaml  warnings count as well, as for a build server\n"
    "Exit status: 0 every file can be used, 1 one cannot, 2 wrong options.";

struct CheckOptions {
  std::vector<std::string> files;
  bool strict = false;
};

void PrintFinding(LogLevel level, const std::string& finding) {
  static const bool isColoured = ShowsColours(stdout);
  std::printf("%s\n", isColoured ? ColouredLine(level, finding).c_str() : finding.c_str());
}

// False: the file cannot be used.
bool CheckFile(const std::string& path, bool strict) {
  std::vector<std::string> warnings;
  const auto text = ReadWorldText({.scenario = "", .file = path});
  std::vector<std::string> others;
  const WorldReading reading = {.findBase =
                                    [&others](const std::string& extends, const std::string& from) {
                                      return FindExtendedWorld(extends, from, &others);
                                    },
                                .seed = 1,
                                .warnings = &warnings};
  const auto world =
      text ? ReadWorldFile(text.GetValue(), reading) : Maybe<WorldData>(text.GetFailure());
  if (!world) PrintFinding(LogLevel::kError, world.GetFailure().text);
  for (const std::string& warning : warnings) {
    PrintFinding(LogLevel::kWarning, warning + " (warning)");
  }
  return world && !(strict && !warnings.empty());
}

int Check(const CheckOptions& options) {
  bool isGood = true;
  for (const std::string& file : options.files) isGood = CheckFile(file, options.strict) && isGood;
  return isGood ? kSucceeded : kFailed;
}

}  // namespace

RunCommand DescribeCheck(CLI::App& app, const ProgramContext&) {
  app.footer(kCheckFooter);
  const auto options = std::make_shared<CheckOptions>();
  app.add_option("files", options->files, "The world files")->required()->type_name("FILE");
  app.add_flag("--strict", options->strict, "A warning makes a file unusable too");
  return [options] { return Check(*options); };
}

}  // namespace Kest::Host
