#include "host/program/program.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <utility>
#include <vector>

#include "host/program/command.h"

namespace Kest::Host {
namespace {

struct CommandRow {
  const char* name;
  const char* summary;
  DescribeCommand describe;
};

constexpr CommandRow kCommands[] = {
    {"check", "Checks world files and prints what is wrong with them", DescribeCheck},
    {"completion", "Prints a script that completes this program's arguments", DescribeCompletion},
};

// Options before a subcommand are those of serving, and would do nothing.
void RefuseServeOptions(const CLI::App& app) {
  for (const CLI::Option* option : app.get_options()) {
    if (option->count() == 0) continue;
    throw CLI::ValidationError(option->get_name(), "belongs after the name of the subcommand");
  }
}

class Program {
 public:
  explicit Program(std::string folder) {
    context_.folder = std::move(folder);
    context_.program = &app_;
    app_.set_version_flag("--version", "tav-loot-host " KEST_VERSION);
    serve_ = DescribeServe(app_, context_);
    for (const CommandRow& row : kCommands) {
      CLI::App* const app = app_.add_subcommand(row.name, row.summary);
      app->callback([this] { RefuseServeOptions(app_); });
      commands_.emplace_back(app, row.describe(*app, context_));
    }
    app_.require_subcommand(0, 1);
  }

  int Run(int argc, const char* const* argv) {
    try {
      app_.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
      return app_.exit(error) == 0 ? kSucceeded : kUsageError;
    }
    return Chosen()();
  }

 private:
  const RunCommand& Chosen() const {
    for (const auto& [app, run] : commands_) {
      if (app->parsed()) return run;
    }
    return serve_;
  }

  CLI::App app_{"Runs the loot plugin against an emulated platform and serves it over HTTP.",
                "tav-loot-host"};
  ProgramContext context_;
  RunCommand serve_;
  std::vector<std::pair<const CLI::App*, RunCommand>> commands_;
};

}  // namespace

int ReportFailure(std::string_view text) {
  std::fprintf(stderr, "tav-loot-host: %.*s\n", static_cast<int>(text.size()), text.data());
  return kFailed;
}

int RunProgram(int argc, const char* const* argv, std::string folder) {
  return Program(std::move(folder)).Run(argc, argv);
}

}  // namespace Kest::Host
