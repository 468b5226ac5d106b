#include <windows.h>

#include <system_error>

#include "host/scenario/folder_lock.h"

namespace Kest::Host {
namespace {

class WindowsFolderLock : public FolderLock {
 public:
  explicit WindowsFolderLock(HANDLE file) : file_(file) {}
  ~WindowsFolderLock() override { CloseHandle(file_); }

 private:
  HANDLE const file_;
};

}  // namespace

// A file that is opened without sharing is opened once.
Maybe<std::unique_ptr<FolderLock>> FolderLock::Take(const std::string& folder) {
  HANDLE const file = CreateFileA((folder + "/lock").c_str(), GENERIC_WRITE, 0, nullptr,
                                  OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file != INVALID_HANDLE_VALUE) {
    return std::unique_ptr<FolderLock>(std::make_unique<WindowsFolderLock>(file));
  }
  const DWORD error = GetLastError();
  if (error == ERROR_SHARING_VIOLATION) return FolderInUse(folder);
  return Failure{"Cannot use " + folder + ": " +
                 std::system_category().message(static_cast<int>(error))};
}

}  // namespace Kest::Host
