// One host at a time uses a folder: a lock on a file in it, which goes with the process.
#pragma once

#include <memory>
#include <string>

#include "base/maybe_type.h"

namespace Kest::Host {

class FolderLock {
 public:
  // A failure names the folder. REQUIRES: the folder is there.
  static Maybe<std::unique_ptr<FolderLock>> Take(const std::string& folder);
  virtual ~FolderLock() = default;
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

 protected:
  FolderLock() = default;
};

inline Failure FolderInUse(const std::string& folder) {
  return Failure{"The folder " + folder + " is in use by another host."};
}

}  // namespace Kest::Host
