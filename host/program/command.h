// A subcommand of the program: its options, and what carries it out.
//
// A subcommand is one file with one function of the type DescribeCommand, declared below, and one
// row of the table in program.cc.
#pragma once

#include <CLI/App.hpp>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace Kest::Host {

// Exit statuses. A command that another one runs has its own.
inline constexpr int kSucceeded = 0;
inline constexpr int kFailed = 1;
inline constexpr int kUsageError = 2;

// What subcommands know of the program that is running.
struct ProgramContext {
  std::string folder;                 // of the executable, with its last separator
  std::vector<std::string> command;   // another program and its arguments: what follows "--"
  const CLI::App* program = nullptr;  // with every subcommand and option
};

// Carries the subcommand out and returns the exit status. Called once, after the options were read.
using RunCommand = std::function<int()>;

// Gives `app`, the subcommand's, its options, examples and exit statuses. `context` outlives what
// is returned; its command is known when that is called.
using DescribeCommand = RunCommand (*)(CLI::App& app, const ProgramContext& context);

RunCommand DescribeServe(CLI::App& app, const ProgramContext& context);  // without a subcommand

RunCommand DescribeCheck(CLI::App& app, const ProgramContext& context);
RunCommand DescribeExec(CLI::App& app, const ProgramContext& context);
RunCommand DescribeExport(CLI::App& app, const ProgramContext& context);
RunCommand DescribeReplay(CLI::App& app, const ProgramContext& context);
RunCommand DescribeCompletion(CLI::App& app, const ProgramContext& context);
RunCommand DescribeManual(CLI::App& app, const ProgramContext& context);

// Writes "tav-loot-host: <text>" to standard error and returns kFailed.
int ReportFailure(std::string_view text);

}  // namespace Kest::Host
