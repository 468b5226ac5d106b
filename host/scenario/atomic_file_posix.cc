#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

#include "host/scenario/atomic_file.h"

namespace Kest::Host {
namespace {

Failure CannotWrite(const std::string& path) {
  return Failure{"Cannot write " + path + ": " + std::generic_category().message(errno)};
}

class OpenFile {
 public:
  explicit OpenFile(int descriptor) : descriptor_(descriptor) {}
  ~OpenFile() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  bool Write(std::string_view text) const {
    while (descriptor_ >= 0 && !text.empty()) {
      const ssize_t written = write(descriptor_, text.data(), text.size());
      if (written < 0 && errno != EINTR) return false;
      if (written > 0) text.remove_prefix(static_cast<size_t>(written));
    }
    return descriptor_ >= 0;
  }
  bool Sync() const { return descriptor_ >= 0 && fsync(descriptor_) == 0; }

 private:
  const int descriptor_;
};

bool WriteToDisk(const std::string& path, std::string_view text) {
  const OpenFile file(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
  return file.Write(text) && file.Sync();
}

}  // namespace

Maybe<Nothing> WriteFileAtomically(const std::string& path, std::string_view text) {
  const std::string beside = path + ".new";
  if (!WriteToDisk(beside, text) || std::rename(beside.c_str(), path.c_str()) != 0) {
    return CannotWrite(path);
  }
  // The new name is on the disk once its folder is.
  const std::string folder = path.substr(0, path.find_last_of('/') + 1);
  const OpenFile opened(
      open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return opened.Sync() ? Maybe<Nothing>(Nothing{}) : Maybe<Nothing>(CannotWrite(path));
}

}  // namespace Kest::Host
