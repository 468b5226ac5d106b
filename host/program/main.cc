// tav-loot-host: the development host of the loot plugin.
#include <string>
#include <utility>

#include "base/platform.h"
#include "host/program/program.h"

int main(int argc, char** argv) {
  std::string folder = Kest::ModulePath();
  folder.resize(folder.size() - Kest::FileNameOf(folder).size());
  return Kest::Host::RunProgram(argc, argv, std::move(folder));
}
