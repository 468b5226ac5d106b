#include "client/response_table.h"

#include <algorithm>
#include <cassert>
#include <new>
#include <utility>

#include "client/service_call.h"
#include "log/logger.h"
#include "plugin/boundary.h"
#include "plugin/once_promise.h"

namespace Kest::Client {

namespace {

constexpr size_t kMaxLostKeys = 4096;

// Whether the unreadable text of a response has the key's parts as strings of their own.
bool Names(std::string_view text, std::string_view key) {
  const auto hasString = [text](std::string_view part) {
    for (size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1)) {
      const size_t end = at + part.size();
      if (at > 0 && text[at - 1] == '"' && end < text.size() && text[end] == '"') return true;
    }
    return false;
  };
  if (hasString(key)) return true;
  const size_t dot = key.find('.');
  return dot != std::string_view::npos && hasString(key.substr(0, dot)) &&
         hasString(key.substr(dot + 1));
}

PluginServiceProxyResponse MakeFailure(std::string_view error) noexcept {
  PluginServiceProxyResponse failure;
  failure.error = CopyMessage(error);
  return failure;
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

size_t ResponseTable::Buffered::Bytes() const {
  return key.size() + response.uuid.size() + response.serviceName.size() +
         response.methodName.size() + response.payload.size() + response.status.size() +
         response.error.size();
}

// ---- Requests -----------------------------------------------------------------------------------

ResponseTable::Sending::Sending(ResponseTable& table, std::string methodKey)
    : table_(table),
      methodKey_(std::move(methodKey)),
      ok_(table.BeginSending(methodKey_, &begin_)) {}

ResponseTable::Sending::~Sending() {
  if (ok_) table_.EndSending(methodKey_, begin_);
}

bool ResponseTable::BeginSending(const std::string& methodKey, uint64_t* begin) {
  Lock hold(*this);
  *begin = arrivals_;
  if (!methodKey.empty()) {
    return !pending_.contains(methodKey) && methodsBeingSent_.insert(methodKey).second;
  }
  uuidsBeingSent_.insert(arrivals_);
  return true;
}

void ResponseTable::EndSending(const std::string& methodKey, uint64_t begin) noexcept {
  Lock hold(*this);
  if (methodKey.empty()) {
    uuidsBeingSent_.erase(uuidsBeingSent_.find(begin));
  } else {
    methodsBeingSent_.erase(methodKey);
  }
  // No caller can claim these any more: they arrived before the requests that are still being sent.
  const uint64_t unclaimed = uuidsBeingSent_.empty() ? arrivals_ : *uuidsBeingSent_.begin();
  for (auto entry = buffered_.begin(); entry != buffered_.end() && entry->first <= unclaimed;) {
    const auto current = entry++;
    if (current->second.byUuid) TakeLocked(current);
  }
  if (uuidsBeingSent_.empty() && methodsBeingSent_.empty()) {
    lostKeys_.clear();
    lostUnknown_ = false;
  }
}

ResponseTable::PendingMap::node_type ResponseTable::MakePending(Pending pending) {
  PendingMap made;
  made.emplace(std::string(), std::move(pending));
  return made.extract(made.begin());
}

std::string ResponseTable::AddPending(const std::string& key, PendingMap::node_type pending) {
  pending.key() = key;
  {
    Lock hold(*this);
    if (finalising_) return std::string(kFinalizing);
    if (pending_.contains(key)) return std::string(kInFlight);
    const auto found = FindBufferedLocked(key);
    if (found == buffered_.end()) {
      if (lostUnknown_ || lostKeys_.contains(key)) return std::string(kLost);
      pending_.insert(std::move(pending));
      return {};
    }
    const uint64_t arrival = found->first;
    CompleteLocked(pending.mapped().complete, {TakeLocked(found).response, arrival});
  }
  LogFulfilled(key);
  pending.mapped().follow();
  return {};
}

bool ResponseTable::IsFinalising() const {
  Lock hold(*this);
  return finalising_;
}

void ResponseTable::Finalise() {
  PendingMap pending;
  std::map<std::string, Completion> handlers;
  BufferedMap buffered;
  Lock hold(*this);
  finalising_ = true;
  pending.swap(pending_);
  handlers.swap(asyncHandlers_);
  buffered.swap(buffered_);
  bufferedBytes_ = 0;
}

// ---- Responses ----------------------------------------------------------------------------------

void ResponseTable::AddUuidResponse(PluginServiceProxyResponse response) {
  std::string key = response.uuid;
  AddResponse({std::move(key), true, std::move(response)});
}

void ResponseTable::AddMethodResponse(PluginServiceProxyResponse response) {
  std::string key = ServiceCallKey(response.serviceName, response.methodName);
  AddResponse({std::move(key), false, std::move(response)});
}

void ResponseTable::AddResponse(Buffered received) {
  PendingMap::node_type pending;
  std::string dropped;
  {
    Lock hold(*this);
    if (finalising_) return;
    const uint64_t arrival = ++arrivals_;
    pending = pending_.extract(received.key);
    if (pending) {
      CompleteLocked(pending.mapped().complete, {std::move(received.response), arrival});
    } else if (!received.byUuid || !uuidsBeingSent_.empty()) {
      dropped = BufferLocked(std::move(received), arrival);
    }
  }
  if (pending) {
    LogFulfilled(pending.key());
    pending.mapped().follow();
  }
  if (!dropped.empty()) {
    LogWarning("%s: Dropped buffered service proxy response: %s", pluginName_.c_str(),
               dropped.c_str());
  }
}

std::string ResponseTable::BufferLocked(Buffered received, uint64_t arrival) {
  const auto earlier = FindBufferedLocked(received.key);
  if (earlier != buffered_.end()) TakeLocked(earlier);
  const auto added = buffered_.emplace(arrival, std::move(received)).first;
  bufferedBytes_ += added->second.Bytes();
  const bool wasDropping = std::exchange(isDropping_, false);
  std::string first;
  while (buffered_.size() > kMaxBufferedResponses || bufferedBytes_ > kMaxBufferedBytes) {
    Buffered oldest = TakeLocked(buffered_.begin());
    if (!wasDropping && first.empty()) first = oldest.key;
    isDropping_ = true;
    LoseLocked(std::move(oldest.key));
  }
  return first;
}

ResponseTable::BufferedMap::iterator ResponseTable::FindBufferedLocked(const std::string& key) {
  return std::find_if(buffered_.begin(), buffered_.end(),
                      [&key](const auto& entry) { return entry.second.key == key; });
}

ResponseTable::Buffered ResponseTable::TakeLocked(BufferedMap::iterator entry) {
  Buffered taken = std::move(buffered_.extract(entry).mapped());
  bufferedBytes_ -= taken.Bytes();
  return taken;
}

void ResponseTable::LoseLocked(std::string key) noexcept {
  if (lostKeys_.size() >= kMaxLostKeys) lostUnknown_ = true;
  try {
    lostKeys_.insert(std::move(key));
  } catch (const std::bad_alloc&) {
    lostUnknown_ = true;
  }
}

void ResponseTable::AddUnreadable(std::string_view text, std::string_view error) noexcept {
  PendingMap failed;
  {
    Lock hold(*this);
    for (auto entry = pending_.begin(); entry != pending_.end();) {
      const auto current = entry++;
      if (!Names(text, current->first)) continue;
      CompleteLocked(current->second.complete, {MakeFailure(error), ++arrivals_});
      failed.insert(pending_.extract(current));
    }
    const bool isBeingSent = !uuidsBeingSent_.empty() || !methodsBeingSent_.empty();
    if (failed.empty() && isBeingSent) lostUnknown_ = true;
  }
  for (const auto& [key, pending] : failed) pending.follow();
}

bool ResponseTable::HasUnclaimedBefore(uint64_t arrival) const {
  Lock hold(*this);
  for (auto entry = buffered_.begin(); entry != buffered_.end() && entry->first < arrival;
       ++entry) {
    const Buffered& buffered = entry->second;
    if (buffered.byUuid || methodsBeingSent_.contains(buffered.key)) return true;
  }
  return false;
}

void ResponseTable::CompleteLocked(const Completion& completion, ArrivedResponse arrived) noexcept {
  const uint64_t arrival = arrived.arrival;
  bool failed = false;
  PluginServiceProxyResponse failure;
  RunAtBoundary([&] { completion(std::move(arrived)); },
                [&](const char* text) noexcept {
                  failed = true;
                  failure = MakeFailure(text);
                });
  // The request must still end: called again with the failure, and never after that.
  if (failed) {
    RunAndLog("Service proxy completion", [&] { completion({std::move(failure), arrival}); });
  }
}

void ResponseTable::LogFulfilled(const std::string& key) const {
  LogAlways("%s: Fulfilled service proxy request: %s", pluginName_.c_str(), key.c_str());
}

// ---- Responses without a request ----------------------------------------------------------------

void ResponseTable::SetAsyncHandler(const std::string& key, Completion handler) {
  Lock hold(*this);
  asyncHandlers_.insert_or_assign(key, std::move(handler));
}

void ResponseTable::DeliverAsync(PluginServiceProxyResponse response) {
  const std::string key = ServiceCallKey(response.serviceName, response.methodName);
  {
    Lock hold(*this);
    if (finalising_) return;
    const auto handler = asyncHandlers_.find(key);
    if (handler != asyncHandlers_.end()) {
      return CompleteLocked(handler->second, {std::move(response), ++arrivals_});
    }
  }
  LogError("%s: Could not find registered handler for async service proxy event %s",
           pluginName_.c_str(), key.c_str());
}

}  // namespace Kest::Client
