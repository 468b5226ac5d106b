#include <cstdio>

#include "host/program/command.h"
#include "host/program/manual_page.h"

namespace Kest::Host {
namespace {

constexpr char kManualFooter[] =
    "Examples:\n"
    "  tav-loot-host manual | man -l -\n"
    "Exit status: 0, or 2 for wrong options.";

}  // namespace

RunCommand DescribeManual(CLI::App& app, const ProgramContext& context) {
  app.footer(kManualFooter);
  return [program = context.program] {
    std::fputs(ManualPage(*program).c_str(), stdout);
    return kSucceeded;
  };
}

}  // namespace Kest::Host
