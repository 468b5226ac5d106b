#include "client/response_table.h"

#include <cassert>
#include <utility>

#include "log/logger.h"
#include "plugin/boundary.h"
#include "plugin/once_promise.h"

namespace Kest::Client {

namespace {

size_t SizeOf(const std::string& key, const PluginServiceProxyResponse& response) {
  return key.size() + response.uuid.size() + response.serviceName.size() +
         response.methodName.size() + response.payload.size() + response.status.size() +
         response.error.size();
}

}  // namespace

// Holds the table's lock. A debug build asserts when its owner locks again: that is a completion
// calling the proxy, which would deadlock.
class KEST_SCOPED_CAPABILITY ResponseTable::Lock {
 public:
  explicit Lock(const ResponseTable& table) KEST_ACQUIRE(table.mutex_) : table_(table) {
    assert(table_.owner_.load() != std::this_thread::get_id());
    table_.mutex_.Lock();
    table_.owner_.store(std::this_thread::get_id());
  }
  ~Lock() KEST_RELEASE() {
    table_.owner_.store(std::thread::id());
    table_.mutex_.Unlock();
  }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

 private:
  const ResponseTable& table_;
};

bool ResponseTable::IsFinalising() const {
  Lock hold(*this);
  return finalising_;
}

bool ResponseTable::Reserve(const std::string& key) {
  Lock hold(*this);
  if (pending_.count(key) != 0) return false;
  return reserved_.insert(key).second;
}

void ResponseTable::Unreserve(const std::string& key) {
  Lock hold(*this);
  reserved_.erase(key);
}

std::string ResponseTable::AddPending(const std::string& key, Completion completion) {
  Lock hold(*this);
  reserved_.erase(key);
  if (finalising_) return std::string(kFinalizing);
  if (!pending_.emplace(key, std::move(completion)).second) return std::string(kInFlight);
  FulfilLocked();
  return {};
}

void ResponseTable::AddResponse(const std::string& key, PluginServiceProxyResponse response) {
  Lock hold(*this);
  if (finalising_) return;
  const auto earlier = received_.find(key);
  if (earlier != received_.end()) EraseLocked(earlier);
  Buffered buffered;
  buffered.sequence = nextSequence_++;
  buffered.bytes = SizeOf(key, response);
  buffered.response = std::move(response);
  bufferedBytes_ += buffered.bytes;
  arrivals_.emplace(buffered.sequence, key);
  received_.emplace(key, std::move(buffered));
  FulfilLocked();
  KeepBoundsLocked();
}

void ResponseTable::FulfilLocked() {
  for (auto received = received_.begin(); received != received_.end(); ++received) {
    const auto pending = pending_.find(received->first);
    if (pending == pending_.end()) continue;
    CompleteLocked(pending->second, std::move(received->second.response));
    LogAlways("%s: Fulfilled service proxy request: %s", pluginName_.c_str(),
              received->first.c_str());
    pending_.erase(pending);
    EraseLocked(received);
    return;
  }
}

void ResponseTable::KeepBoundsLocked() {
  while (received_.size() > kMaxBufferedResponses || bufferedBytes_ > kMaxBufferedBytes) {
    const auto oldest = received_.find(arrivals_.begin()->second);
    LogWarning("%s: Dropped buffered service proxy response: %s", pluginName_.c_str(),
               oldest->first.c_str());
    EraseLocked(oldest);
  }
}

void ResponseTable::EraseLocked(BufferedMap::iterator entry) {
  bufferedBytes_ -= entry->second.bytes;
  arrivals_.erase(entry->second.sequence);
  received_.erase(entry);
}

void ResponseTable::CompleteLocked(const Completion& completion,
                                   PluginServiceProxyResponse response) {
  bool failed = false;
  PluginServiceProxyResponse failure;
  RunAtBoundary([&] { completion(std::move(response)); },
                [&](const char* text) {
                  failed = true;
                  failure.error = *text != '\0' ? text : "unknown exception";
                });
  // The request must still end: called again with the failure, and never after that.
  if (failed) {
    RunAndLog("Service proxy completion", [&] { completion(std::move(failure)); });
  }
}

void ResponseTable::SetAsyncHandler(const std::string& key, Completion handler) {
  Lock hold(*this);
  asyncHandlers_.insert_or_assign(key, std::move(handler));
}

void ResponseTable::DeliverAsync(const std::string& key, PluginServiceProxyResponse response) {
  Lock hold(*this);
  if (finalising_) return;
  const auto handler = asyncHandlers_.find(key);
  if (handler != asyncHandlers_.end()) {
    CompleteLocked(handler->second, std::move(response));
  } else {
    LogError("%s: Could not find registered handler for async service proxy event %s",
             pluginName_.c_str(), key.c_str());
  }
}

void ResponseTable::Finalise() {
  std::map<std::string, Completion> pending;
  std::map<std::string, Completion> handlers;
  BufferedMap received;
  Lock hold(*this);
  finalising_ = true;
  pending.swap(pending_);
  handlers.swap(asyncHandlers_);
  received.swap(received_);
  arrivals_.clear();
  bufferedBytes_ = 0;
}

}  // namespace Kest::Client
