// ResponseTable matches responses of the platform services to pending requests. A response may
// arrive before its request is known; it is then buffered, within bounds: 1,024 responses and
// 16 MiB, the oldest dropped first.
//
// Threads: any. One lock covers the three maps; it is held while a completion or handler runs and
//          taken before the logger's lock. A completion may therefore set a promise or post a task,
//          but not call the table again; debug builds stop there.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <thread>

#include "base/mutex.h"
#include "plugin/plugin_events.h"

namespace Kest::Client {

class ResponseTable {
 public:
  // Called at most once, except that one which throws is called again with the exception's message
  // as the response's `error`. Dropped unused when the plugin stops first.
  using Completion = std::function<void(PluginServiceProxyResponse response)>;

  static constexpr std::string_view kInFlight = "Request already in flight";
  static constexpr size_t kMaxBufferedResponses = 1024;
  static constexpr size_t kMaxBufferedBytes = size_t{16} << 20;

  // `pluginName` is the prefix of log lines and outlives the table.
  explicit ResponseTable(const std::string& pluginName) : pluginName_(pluginName) {}

  bool IsFinalising() const KEST_EXCLUDES(mutex_);

  // Keeps the key for a request that is being sent. False: one with this key is pending or being
  // sent already.
  bool Reserve(const std::string& key) KEST_EXCLUDES(mutex_);
  void Unreserve(const std::string& key) KEST_EXCLUDES(mutex_);

  // Enters a request (its reservation ends), fulfils it if its response is buffered already, and
  // returns an empty string. Otherwise the failure message; `completion` is dropped.
  std::string AddPending(const std::string& key, Completion completion) KEST_EXCLUDES(mutex_);

  // Buffers the response under `key`, replacing an earlier one, and fulfils the request that waits
  // for it.
  void AddResponse(const std::string& key, PluginServiceProxyResponse response)
      KEST_EXCLUDES(mutex_);

  void SetAsyncHandler(const std::string& key, Completion handler) KEST_EXCLUDES(mutex_);
  // Hands the response to the key's handler; without one it is logged and dropped.
  void DeliverAsync(const std::string& key, PluginServiceProxyResponse response)
      KEST_EXCLUDES(mutex_);

  // Drops every completion and handler unused, and refuses new requests.
  void Finalise() KEST_EXCLUDES(mutex_);

 private:
  class Lock;
  struct Buffered {
    PluginServiceProxyResponse response;
    uint64_t sequence = 0;
    size_t bytes = 0;
  };
  using BufferedMap = std::map<std::string, Buffered>;

  void FulfilLocked() KEST_REQUIRES(mutex_);
  void KeepBoundsLocked() KEST_REQUIRES(mutex_);
  void EraseLocked(BufferedMap::iterator entry) KEST_REQUIRES(mutex_);
  void CompleteLocked(const Completion& completion, PluginServiceProxyResponse response)
      KEST_REQUIRES(mutex_);

  const std::string& pluginName_;

  mutable Mutex mutex_;
  mutable std::atomic<std::thread::id> owner_{};  // who holds the lock
  bool finalising_ KEST_GUARDED_BY(mutex_) = false;
  std::map<std::string, Completion> pending_ KEST_GUARDED_BY(mutex_);
  std::set<std::string> reserved_ KEST_GUARDED_BY(mutex_);
  BufferedMap received_ KEST_GUARDED_BY(mutex_);
  std::map<uint64_t, std::string> arrivals_ KEST_GUARDED_BY(mutex_);  // keys in order of arrival
  uint64_t nextSequence_ KEST_GUARDED_BY(mutex_) = 0;
  size_t bufferedBytes_ KEST_GUARDED_BY(mutex_) = 0;
  std::map<std::string, Completion> asyncHandlers_ KEST_GUARDED_BY(mutex_);
};

}  // namespace Kest::Client
