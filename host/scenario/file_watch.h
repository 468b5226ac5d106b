// Notices that files were written, by their times and sizes, a few times a second: that works on
// every system, and for files that an editor replaces.
//
// Threads: any; the report comes on a thread of the watch.
#pragma once

#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "base/mutex.h"
#include "host/tasks/condition.h"

namespace Kest::Host {

class FileWatch {
 public:
  // `changed` is called when one of the files is another than before, and has been the same for two
  // looks: what is still being written is waited for. `missing` is called with one of the files
  // that was there and has been gone for two looks. Neither must destroy the watch.
  FileWatch(std::vector<std::string> paths, std::function<void()> changed,
            std::function<void(const std::string& path)> missing);
  ~FileWatch();
  FileWatch(const FileWatch&) = delete;
  FileWatch& operator=(const FileWatch&) = delete;

  // Watches these instead. What they are like now counts as known.
  void SetPaths(std::vector<std::string> paths);

 private:
  // What is known of the files; empty while one of them is missing.
  using Stamp = std::string;

  static Stamp Look(const std::vector<std::string>& paths, std::string* gone = nullptr);
  void Run();

  const std::function<void()> changed_;
  const std::function<void(const std::string& path)> missing_;
  Mutex mutex_;
  Condition wake_;
  std::vector<std::string> paths_ KEST_GUARDED_BY(mutex_);
  Stamp known_ KEST_GUARDED_BY(mutex_);
  bool ending_ KEST_GUARDED_BY(mutex_) = false;
  std::thread thread_;
};

}  // namespace Kest::Host
