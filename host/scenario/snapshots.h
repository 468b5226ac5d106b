// Worlds that were put aside by name, each as the text of a world file. In memory, or in the folder
// "snapshots" of the state's folder. At most 100 of them, 256 MiB together.
//
// Threads: [task] on the scheduler's tasks, except the constructor.
#pragma once

#include <cstddef>
#include <map>
#include <string>

#include "base/maybe_type.h"
#include "host/json/json.h"

namespace Kest::Host {

class Snapshots {
 public:
  // Empty: in memory. The names of those in the folder are read when they are first needed.
  explicit Snapshots(const std::string& stateFolder);

  // Refused with 400 for a name that could not be one of a file, with 409 when there is no space.
  Maybe<Nothing> Put(const std::string& name, const std::string& text);
  // 404: there is none of that name.
  Maybe<std::string> Get(const std::string& name);
  Maybe<Nothing> Remove(const std::string& name);
  // [{"name", "bytes"}]
  Json List();

 private:
  struct Snapshot {
    size_t bytes = 0;
    std::string text;  // empty when it is in a file
  };

  void ReadFolder();
  std::string PathOf(const std::string& name) const { return folder_ + "/" + name + ".json"; }

  const std::string folder_;
  bool hasRead_ = false;
  std::map<std::string, Snapshot> byName_;
};

}  // namespace Kest::Host
