#include "host/scenario/file_watch.h"

#include <chrono>
#include <filesystem>
#include <system_error>
#include <utility>

namespace Kest::Host {
namespace {

constexpr auto kPeriod = std::chrono::milliseconds(200);

}  // namespace

FileWatch::FileWatch(std::vector<std::string> paths, std::function<void()> changed,
                     std::function<void(const std::string& path)> missing)
    : changed_(std::move(changed)),
      missing_(std::move(missing)),
      paths_(std::move(paths)),
      known_(Look(paths_)) {
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

FileWatch::Stamp FileWatch::Look(const std::vector<std::string>& paths, std::string* gone) {
  Stamp stamp;
  for (const std::string& path : paths) {
    if (gone != nullptr) *gone = path;
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
  Stamp before = "unknown";
  Stamp reported;  // the stamp of which it was said that a file is missing: what was known then
  mutex_.Lock();
  while (!ending_) {
    std::string gone;
    const Stamp now = Look(paths_, &gone);
    const bool isSteady = now == before;
    before = now;
    const bool isChange = isSteady && !now.empty() && now != known_;
    const bool isLoss = isSteady && now.empty() && reported != known_;
    if (isChange) known_ = now;
    reported = isLoss ? known_ : (now.empty() ? reported : Stamp());
    mutex_.Unlock();
    if (isChange) changed_();
    if (isLoss) missing_(gone);
    mutex_.Lock();
    if (!ending_) wake_.WaitUntil(mutex_, std::chrono::steady_clock::now() + kPeriod);
  }
  mutex_.Unlock();
}

}  // namespace Kest::Host
