// Copies of the plugin's library, so that it can be built again while the host has it loaded.
//
// Threads: [task], except construction and destruction.
#pragma once

#include <string>
#include <vector>

#include "base/maybe_type.h"

namespace Kest::Host {

class PluginCopies {
 public:
  explicit PluginCopies(std::string path) : path_(std::move(path)) {}
  // Removes the copies. REQUIRES: none of them is loaded any more.
  ~PluginCopies();
  PluginCopies(const PluginCopies&) = delete;
  PluginCopies& operator=(const PluginCopies&) = delete;

  // The path of a copy of what the library is now.
  Maybe<std::string> Make();

 private:
  const std::string path_;
  std::vector<std::string> made_;
};

}  // namespace Kest::Host
