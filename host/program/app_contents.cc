#include "host/program/app_contents.h"

#include <CLI/CLI.hpp>

namespace Kest::Host {

std::vector<const CLI::App*> SubcommandsOf(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App*) { return true; });
}

std::vector<std::string> LongNamesOf(const CLI::Option& option) {
  std::vector<std::string> names;
  for (const std::string& name : option.get_lnames()) names.push_back("--" + name);
  return names;
}

}  // namespace Kest::Host
