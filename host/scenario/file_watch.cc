#include "host/scenario/file_watch.h"

#include <chrono>
#include <filesystem>
#include <system_error>
#include <utility>

namespace Kest::Host {
namespace {

constexpr auto kPeriod = std::chrono::milliseconds(200);

}  // namespace

FileWatch::FileWatch(std::vector<std::string> paths, std::function<void()> changed)
    : changed_(std::move(changed)), paths_(std::move(paths)), known_(Look(paths_)) {
  thread_ = std::thread([this] { Run(); });
}

FileWatch::~FileWatch() {
  {
    const MutexLock lock(mutex_);
    ending_ = true;
  }
  wake_.NotifyAll();
  thread_.join();
}

void FileWatch::SetPaths(std::vector<std::string> paths) {
  const MutexLock lock(mutex_);
  if (paths == paths_) return;
  paths_ = std::move(paths);
  known_ = Look(paths_);
}

FileWatch::Stamp FileWatch::Look(const std::vector<std::string>& paths) {
  Stamp stamp;
  for (const std::string& path : paths) {
    std::error_code error;
    const auto time = std::filesystem::last_write_time(path, error).time_since_epoch().count();
    if (error) return "";
    const auto size = std::filesystem::file_size(path, error);
    if (error) return "";
    stamp += std::to_string(time) + " " + std::to_string(size) + "\n";
  }
  return stamp;
}

void FileWatch::Run() {
  Stamp before;
  mutex_.Lock();
  while (!ending_) {
    const Stamp now = Look(paths_);
    const bool isReady = !now.empty() && now == before && now != known_;
    before = now;
    if (isReady) {
      known_ = now;
      mutex_.Unlock();
      changed_();
      mutex_.Lock();
    }
    if (!ending_) wake_.WaitUntil(mutex_, std::chrono::steady_clock::now() + kPeriod);
  }
  mutex_.Unlock();
}

}  // namespace Kest::Host
