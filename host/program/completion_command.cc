#include <cstdio>
#include <memory>

#include "host/program/command.h"
#include "host/program/completion_script.h"

namespace Kest::Host {
namespace {

constexpr char kCompletionFooter[] =
    "Examples:\n"
    "  . <(tav-loot-host completion bash)          for this shell\n"
    "  tav-loot-host completion bash > ~/.local/share/bash-completion/completions/tav-loot-host\n"
    "Exit status: 0, or 2 for wrong options.";

}  // namespace

RunCommand DescribeCompletion(CLI::App& app, const ProgramContext& context) {
  app.footer(kCompletionFooter);
  const auto shell = std::make_shared<std::string>();
  app.add_option("shell", *shell, "The shell")
      ->required()
      ->type_name("bash")
      ->check(CLI::IsMember({"bash"}).description(""));
  return [shell, program = context.program] {
    std::fputs(BashCompletion(*program).c_str(), stdout);
    return kSucceeded;
  };
}

}  // namespace Kest::Host
