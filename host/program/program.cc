#include "host/program/program.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstring>
#include <utility>
#include <vector>

#include "host/program/command.h"

namespace Kest::Host {
namespace {

struct CommandRow {
  const char* name;
  const char* summary;
  DescribeCommand describe;
  bool runsCommand = false;  // another program, named after "--"
};

constexpr CommandRow kCommands[] = {
    {"check", "Checks world files and prints what is wrong with them", DescribeCheck},
    {"exec", "Runs a command against a host of its own: exec [OPTIONS] -- COMMAND [ARGUMENTS]",
     DescribeExec, true},
    {"export", "Writes what the plugin returns as files, for tests that need no server",
     DescribeExport},
    {"replay", "Drives the plugin with a recording and prints the first difference",
     DescribeReplay},
    {"completion", "Prints a script that completes this program's arguments", DescribeCompletion},
    {"manual", "Prints the manual page", DescribeManual},
};

// Options before a subcommand are those of serving, and would do nothing.
void RefuseServeOptions(const CLI::App& app) {
  for (const CLI::Option* option : app.get_options()) {
    if (option->count() == 0) continue;
    throw CLI::ValidationError(option->get_name(), "belongs after the name of the subcommand");
  }
}

// An option's parser takes "--name=" for the option without a value, and an empty path means that
// none was given: what a script left empty would be another run than the one it asks for.
void RefuseEmptyValues(int argc, const char* const* argv) {
  std::string before = "argument";
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    const size_t equals = argument.find('=');
    const bool endsEmpty = argument.starts_with("--") && equals + 1 == argument.size();
    if (endsEmpty) before = argument.substr(0, equals);
    if (endsEmpty || argument.empty()) throw CLI::ValidationError(before, "must not be empty");
    before = argument;
  }
}

class Program {
 public:
  explicit Program(std::string folder) {
    context_.folder = std::move(folder);
    context_.program = &app_;
    // A path that begins with "/" is no option, on any system; the subcommands inherit it.
    app_.allow_windows_style_options(false);
    app_.set_version_flag("--version", "tav-loot-host " KEST_VERSION);
    serve_ = DescribeServe(app_, context_);
    for (const CommandRow& row : kCommands) {
      CLI::App* const app = app_.add_subcommand(row.name, row.summary);
      commands_.push_back({app, row.describe(*app, context_), row.runsCommand});
    }
    app_.require_subcommand(0, 1);
  }

  int Run(int argc, const char* const* argv) {
    // What follows "--" belongs to another program and is not looked into.
    int own = 1;
    while (own < argc && std::strcmp(argv[own], "--") != 0) ++own;
    if (own < argc) context_.command.assign(argv + own + 1, argv + argc);
    try {
      RefuseEmptyValues(own, argv);
      app_.parse(own, argv);
      CheckChoice();
    } catch (const CLI::ParseError& error) {
      return app_.exit(error) == 0 ? kSucceeded : kUsageError;
    }
    const Choice* const chosen = Chosen();
    return chosen == nullptr ? serve_() : chosen->run();
  }

 private:
  struct Choice {
    const CLI::App* app;
    RunCommand run;
    bool runsCommand;
  };

  // The subcommand; null when there is none.
  const Choice* Chosen() const {
    for (const Choice& command : commands_) {
      if (command.app->parsed()) return &command;
    }
    return nullptr;
  }

  void CheckChoice() const {
    const Choice* const chosen = Chosen();
    if (chosen != nullptr) RefuseServeOptions(app_);
    const bool runsCommand = chosen != nullptr && chosen->runsCommand;
    if (runsCommand && context_.command.empty()) {
      throw CLI::ValidationError("exec", "name the command after --, as in exec -- npm test");
    }
    if (!runsCommand && !context_.command.empty()) {
      throw CLI::ValidationError("--", "only exec runs a command");
    }
  }

  CLI::App app_{"Runs the loot plugin against an emulated platform and serves it over HTTP.",
                "tav-loot-host"};
  ProgramContext context_;
  RunCommand serve_;
  std::vector<Choice> commands_;
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
