// Records every crossing of the C interface, in both directions, to a file that can be replayed.
//
// While it records, code of the plugin runs on one thread at a time: an event of the platform's
// service comes between two steps of the module tasks and never beside one. So the order of the
// lines is the order of all that happened, and a replay in this order does the same.
//
// Threads: any.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

#include "base/maybe_type.h"
#include "base/mutex.h"
#include "host/record/crossing.h"
#include "host/record/recording_writer.h"
#include "plugin/host_interface.h"

namespace Kest::Host {

class Recorder {
 public:
  // `onFailure` is called once when the file cannot be written any more; what happens from there on
  // is not recorded.
  static Maybe<std::unique_ptr<Recorder>> Create(const std::string& path,
                                                 std::function<void(std::string_view)> onFailure);

  // Runs the handshake and puts the recording between the plugin and its host: see
  // PluginLibrary::Enter. The recorder outlives what is returned.
  std::shared_ptr<void> Enter(KestLoadFunction load, KestHandshakeBlock* block);

  // Writes the crossing that `make` returns, with the next number, and returns that.
  uint64_t Write(const std::function<Crossing()>& make) noexcept KEST_EXCLUDES(mutex_);
  // How many crossings there were, but for tasks that yielded and went on.
  uint64_t Activity() const { return activity_; }
  // Whether this is the thread of the module tasks.
  bool OnTaskThread() const { return std::this_thread::get_id() == taskThread_; }

 private:
  Recorder(std::unique_ptr<RecordingWriter> writer,
           std::function<void(std::string_view)> onFailure);
  void Report() noexcept;
  bool WriteLocked(const std::function<Crossing()>& make) noexcept KEST_REQUIRES(mutex_);

  const std::function<void(std::string_view)> onFailure_;
  std::atomic<std::thread::id> taskThread_ = std::thread::id();  // that loads libraries
  std::atomic<uint64_t> activity_ = 0;
  Mutex mutex_;
  std::unique_ptr<RecordingWriter> writer_ KEST_GUARDED_BY(mutex_);  // null once it has failed
  uint64_t number_ KEST_GUARDED_BY(mutex_) = 0;
  uint64_t sessions_ KEST_GUARDED_BY(mutex_) = 0;
};

}  // namespace Kest::Host
