// ResponseTable matches responses of the platform services to pending requests, and numbers them in
// the order in which they arrive.
//
// A response may come before its request is known: a uuid is known only when the host has accepted
// the request. While requests are being sent, unknown responses are therefore buffered, within
// bounds: 1,024 responses and 16 MiB, the oldest dropped first. While none is being sent, no caller
// can claim a response by uuid, and it is dropped at once: the host delivers the responses of every
// plugin. A request whose response was dropped, or could not be read, fails.
//
// Threads: any. One lock covers the table; it is held while a completion or handler runs. A
//          completion may therefore move the response, set a promise or post a task, but not call
//          the table again; debug builds stop there. What takes longer follows without the lock.
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

struct ArrivedResponse {
  PluginServiceProxyResponse response;
  uint64_t arrival = 0;  // grows with each response
};

class ResponseTable {
 public:
  // Called at most once, except that one which throws is called again with the exception's message
  // as the response's `error`. Dropped unused when the plugin stops first.
  using Completion = std::function<void(ArrivedResponse arrived)>;
  struct Pending {
    Completion complete;
    // Called after it, on the same thread without the lock.
    std::function<void()> follow;
  };
  // By request key. A request is entered as a node made before it is sent, so that entering it
  // needs no memory.
  using PendingMap = std::map<std::string, Pending>;

  static constexpr std::string_view kInFlight = "Request already in flight";
  static constexpr std::string_view kLost = "Response lost";
  static constexpr size_t kMaxBufferedResponses = 1024;
  static constexpr size_t kMaxBufferedBytes = size_t{16} << 20;

  // `pluginName` is the prefix of log lines and outlives the table.
  explicit ResponseTable(const std::string& pluginName) : pluginName_(pluginName) {}

  bool IsFinalising() const KEST_EXCLUDES(mutex_);

  // A request that is being sent, from before the host gets it until it is entered or has failed.
  // `methodKey` is empty for one that the host will name by a uuid; `Ok` is false while another
  // with that method key is pending or being sent.
  class Sending {
   public:
    Sending(ResponseTable& table, std::string methodKey);
    ~Sending();
    Sending(const Sending&) = delete;
    Sending& operator=(const Sending&) = delete;

    bool Ok() const { return ok_; }

   private:
    ResponseTable& table_;
    const std::string methodKey_;  // empty: keyed by uuid
    uint64_t begin_ = 0;           // what arrived up to then is no response to it
    const bool ok_;
  };

  static PendingMap::node_type MakePending(Pending pending);
  // Enters a request that is being sent, fulfils it if its response is buffered already, and
  // returns an empty string. Otherwise the failure message; `pending` is dropped.
  std::string AddPending(const std::string& key, PendingMap::node_type pending)
      KEST_EXCLUDES(mutex_);

  // Fulfils the request that waits for the response, or buffers it under `key`, replacing an
  // earlier one.
  void AddUuidResponse(PluginServiceProxyResponse response) KEST_EXCLUDES(mutex_);
  void AddMethodResponse(PluginServiceProxyResponse response) KEST_EXCLUDES(mutex_);
  // A response that could not be read: fails the requests whose key its text names. If there is
  // none it may be the response of a request that is being sent, and those fail.
  void AddUnreadable(std::string_view text, std::string_view error) noexcept KEST_EXCLUDES(mutex_);

  // Whether a request that is being sent may still claim a response that arrived before `arrival`.
  bool HasUnclaimedBefore(uint64_t arrival) const KEST_EXCLUDES(mutex_);

  void SetAsyncHandler(const std::string& key, Completion handler) KEST_EXCLUDES(mutex_);
  // Hands the response to its method's handler; without one it is logged and dropped.
  void DeliverAsync(PluginServiceProxyResponse response) KEST_EXCLUDES(mutex_);

  // Drops every completion and handler unused, and refuses new requests. Needs no memory.
  void Finalise() KEST_EXCLUDES(mutex_);

 private:
  class Lock;
  struct Buffered {
    std::string key;
    bool byUuid = false;
    PluginServiceProxyResponse response;

    size_t Bytes() const;
  };
  using BufferedMap = std::map<uint64_t, Buffered>;  // by arrival

  bool BeginSending(const std::string& methodKey, uint64_t* begin) KEST_EXCLUDES(mutex_);
  void EndSending(const std::string& methodKey, uint64_t begin) noexcept KEST_EXCLUDES(mutex_);
  void AddResponse(Buffered received) KEST_EXCLUDES(mutex_);
  // Returns the key of a response that was dropped for it, the first of a burst; otherwise nothing.
  std::string BufferLocked(Buffered received, uint64_t arrival) KEST_REQUIRES(mutex_);
  BufferedMap::iterator FindBufferedLocked(const std::string& key) KEST_REQUIRES(mutex_);
  Buffered TakeLocked(BufferedMap::iterator entry) KEST_REQUIRES(mutex_);
  // Remembers that the response was dropped, for the request that may turn out to want it.
  void LoseLocked(std::string key) noexcept KEST_REQUIRES(mutex_);
  void CompleteLocked(const Completion& completion, ArrivedResponse arrived) noexcept
      KEST_REQUIRES(mutex_);
  void LogFulfilled(const std::string& key) const;

  const std::string& pluginName_;

  mutable Mutex mutex_;
  mutable std::atomic<std::thread::id> owner_{};  // who holds the lock
  bool finalising_ KEST_GUARDED_BY(mutex_) = false;
  PendingMap pending_ KEST_GUARDED_BY(mutex_);
  std::set<std::string> methodsBeingSent_ KEST_GUARDED_BY(mutex_);
  std::multiset<uint64_t> uuidsBeingSent_ KEST_GUARDED_BY(mutex_);  // by what had arrived before
  uint64_t arrivals_ KEST_GUARDED_BY(mutex_) = 0;
  BufferedMap buffered_ KEST_GUARDED_BY(mutex_);
  size_t bufferedBytes_ KEST_GUARDED_BY(mutex_) = 0;
  bool isDropping_ KEST_GUARDED_BY(mutex_) = false;  // the last response dropped another
  // What was dropped while requests are being sent. `lostUnknown_`: of one the key is not known.
  std::set<std::string> lostKeys_ KEST_GUARDED_BY(mutex_);
  bool lostUnknown_ KEST_GUARDED_BY(mutex_) = false;
  std::map<std::string, Completion> asyncHandlers_ KEST_GUARDED_BY(mutex_);
};

}  // namespace Kest::Client
