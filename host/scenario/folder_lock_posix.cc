#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "host/scenario/folder_lock.h"

namespace Kest::Host {
namespace {

class PosixFolderLock : public FolderLock {
 public:
  explicit PosixFolderLock(int descriptor) : descriptor_(descriptor) {}
  ~PosixFolderLock() override { close(descriptor_); }

 private:
  const int descriptor_;
};

}  // namespace

Maybe<std::unique_ptr<FolderLock>> FolderLock::Take(const std::string& folder) {
  const int descriptor = open((folder + "/lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
  if (descriptor < 0) {
    return Failure{"Cannot use " + folder + ": " + std::generic_category().message(errno)};
  }
  std::unique_ptr<FolderLock> lock = std::make_unique<PosixFolderLock>(descriptor);
  // A file system that knows no locks is used without one.
  if (flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return FolderInUse(folder);
  return lock;
}

}  // namespace Kest::Host
