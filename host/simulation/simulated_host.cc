#include "host/simulation/simulated_host.h"

#include <algorithm>
#include <utility>

#include "host/library/sent_request.h"
#include "host/simulation/machine/plugin_memory.h"
#include "plugin/text_view.h"

namespace Kest::Host {
namespace {

constexpr std::string_view kResponseEvent = "OnServiceProxyUuidEvent";
constexpr int64_t kStartOfTime = 1'700'000'000'000;  // milliseconds since 1970
constexpr size_t kUuidBytes = 16;

// {"uri":..,"eventType":..,"data":..}: the text of "data", the last member; nothing without it.
std::optional<std::string_view> DataOf(std::string_view payload) {
  constexpr std::string_view kDelete = "\"eventType\":\"Delete\"}";
  constexpr std::string_view kData = "\"data\":";
  const size_t at = payload.find(kData);
  if (payload.ends_with(kDelete) || at == payload.npos) return std::nullopt;
  payload.remove_suffix(1);
  return payload.substr(at + kData.size());
}

}  // namespace

struct SimulatedHost::Sent : SentRequest {
  uint64_t generation;
};

struct SimulatedHost::Entries {
  using Self = const KestHostServices*;

  template <typename Call>
  static auto AsHost(Self self, Call call) noexcept {
    const RunningCode code(RunningCode::Of::kHost);
    return call(OwnedServices<SimulatedHost>::Of(self));
  }
  // For entries whose call may be what a waiting task waited for.
  template <typename Call>
  static auto Act(Self self, Call call) noexcept {
    return AsHost(self, [&](SimulatedHost& host) {
      host.scheduler_->NoteProgress();
      return call(host);
    });
  }

  static bool Request(Self self, const KestRequest* request, KestCompletion completion,
                      void* context) {
    return Act(self,
               [&](SimulatedHost& host) { return host.Request(*request, completion, context); });
  }
  static bool Subscribe(Self self, KestText name, KestDelivery delivery, void* context) {
    return Act(
        self, [&](SimulatedHost& host) { return host.Subscribe(ToView(name), delivery, context); });
  }
  static void Unsubscribe(Self self, KestText name) {
    Act(self, [&](SimulatedHost& host) { host.subscriptions_.erase(std::string(ToView(name))); });
  }
  static bool Publish(Self self, KestText path, int32_t eventType, KestBytes json) {
    return Act(self, [&](SimulatedHost& host) {
      host.observer_->OnPublish(ToView(path), eventType, ToView(json));
      return true;
    });
  }
  static int32_t PostTask(Self self, KestText name, KestTask run, void* context) {
    return Act(self,
               [&](SimulatedHost& host) { return host.PostTask(ToView(name), run, context); });
  }
  static void WaitBegin(Self, KestText) {}
  static void WaitEnd(Self) {}
  static void Yield(Self self) {
    AsHost(self, [](SimulatedHost& host) { host.scheduler_->Yield(); });
  }
  static void Log(Self self, int32_t level, KestText line) {
    AsHost(self, [&](SimulatedHost& host) { host.observer_->OnLog(level, ToView(line)); });
  }
  static void Telemetry(Self, KestText, KestBytes) {}
  static void Identify(Self, KestText, KestText) {}
  static int64_t Now(Self self) {
    return AsHost(self, [](SimulatedHost& host) { return kStartOfTime + host.scheduler_->Now(); });
  }
  static bool CreateUuid(Self self, uint8_t* uuid) {
    return AsHost(self, [uuid](SimulatedHost& host) {
      std::fill_n(uuid, kUuidBytes, uint8_t{0});
      uint64_t number = ++host.nextUuid_;
      for (size_t i = kUuidBytes; number != 0; number >>= 8) uuid[--i] = number & 0xff;
      return true;
    });
  }
};

SimulatedHost::SimulatedHost(World* world, VirtualScheduler* scheduler, HostObserver* observer,
                             bool inOrder)
    : world_(world),
      scheduler_(scheduler),
      observer_(observer),
      inOrder_(inOrder),
      services_(OwnedServices<SimulatedHost>::Make<Entries>(this)) {}

void SimulatedHost::Close() {
  ++generation_;
  subscriptions_.clear();
  scheduler_->DropAll();
  openRequests_ = 0;
  lostResponses_ = 0;
  nextResponse_ = {};
  refuseRequest_ = false;
}

std::vector<std::string> SimulatedHost::SubscribedNames() const {
  std::vector<std::string> names;
  for (const auto& [name, subscription] : subscriptions_) names.push_back(name);
  return names;
}

WorldResponse SimulatedHost::Control(std::string_view method, std::string_view path,
                                     std::string_view body) {
  WorldResponse response = world_->Control(method, path, body);
  DispatchWorldEvents();
  return response;
}

// ---- Requests of the plugin --------------------------------------------------------------------

bool SimulatedHost::Request(const KestRequest& request, KestCompletion completion, void* context) {
  if (std::exchange(refuseRequest_, false)) return false;
  Sent sent{SentRequest::Copy(request, completion, context), generation_};
  observer_->OnRequest(sent.method, sent.url);
  ++openRequests_;
  scheduler_->PostFree([this, sent = std::move(sent)] { Complete(sent); });
  return true;
}

void SimulatedHost::Complete(const Sent& sent) {
  if (sent.generation != generation_) return;
  const WorldResponse result = world_->Request(sent.method, sent.url, sent.contentType, sent.body);
  DispatchWorldEvents();
  const KestResponse response = {result.status, ToText(result.message), ToText(result.contentType),
                                 ToBytes(result.body)};
  --openRequests_;
  observer_->OnResponse(sent.method, sent.url, result.status);
  const RunningCode code(RunningCode::Of::kPlugin);
  sent.completion(sent.context, &response);
}

// ---- Events to the plugin ----------------------------------------------------------------------

bool SimulatedHost::Subscribe(std::string_view name, KestDelivery delivery, void* context) {
  // A subscription that replaces another takes over what is queued for it.
  const auto known = subscriptions_.find(name);
  const uint64_t serial = known != subscriptions_.end() ? known->second.serial : ++nextSerial_;
  subscriptions_.insert_or_assign(std::string(name), Subscription{delivery, context, serial});
  if (!name.starts_with(kResourceEventPrefix)) return true;
  const auto present = world_->PresentValue(name.substr(kResourceEventPrefix.size()));
  if (present) QueueResourceEvent(present->name, present->payload);
  return true;
}

void SimulatedHost::QueueResourceEvent(const std::string& name, const std::string& payload) {
  const auto found = subscriptions_.find(name);
  if (found == subscriptions_.end()) return;
  const uint64_t serial = found->second.serial;
  scheduler_->PostToLane(name + " " + std::to_string(serial), [this, name, payload, serial] {
    if (!subscriptions_.contains(name)) return;
    observer_->OnResource(std::string_view(name).substr(kResourceEventPrefix.size()),
                          DataOf(payload));
    Deliver(name, payload, serial);
  });
}

// Serial 0: any follower of the name.
void SimulatedHost::Deliver(const std::string& name, const std::string& payload, uint64_t serial) {
  const auto found = subscriptions_.find(name);
  if (found == subscriptions_.end() || (serial != 0 && found->second.serial != serial)) return;
  const Subscription subscription = found->second;
  const RunningCode code(RunningCode::Of::kPlugin);
  subscription.delivery(subscription.context, ToText(name), ToText("application/json"),
                        ToBytes(payload));
}

void SimulatedHost::DispatchWorldEvents() {
  for (const WorldEvent& event : world_->TakeEvents()) {
    if (event.channel == WorldEvent::Channel::kResource) {
      QueueResourceEvent(event.name, event.payload);
    } else if (event.name == kResponseEvent) {
      SendResponse(event);
    } else {
      scheduler_->PostEvent(event.delayMilliseconds,
                            [this, event] { Deliver(event.name, event.payload, 0); });
    }
  }
}

void SimulatedHost::SendResponse(const WorldEvent& event) {
  const ResponseLedger::Kind kind = ResponseLedger::KindOf(event.payload);
  const uint64_t number = ledger_.NoteAct(kind);
  const ResponseFault fault = std::exchange(nextResponse_, {});
  if (fault.kind == ResponseFault::Kind::kLost) {
    ++lostResponses_;
    return ledger_.NoteLost(kind);
  }
  int64_t due = scheduler_->Now() + event.delayMilliseconds;
  if (fault.kind == ResponseFault::Kind::kLate) due += fault.milliseconds;
  if (inOrder_) due = lastDue_ = std::max(lastDue_, due);
  const auto deliver = [this, event, kind, number] {
    ledger_.NoteArrival(kind, number);
    Deliver(event.name, event.payload, 0);
  };
  scheduler_->PostEvent(due - scheduler_->Now(), deliver);
  if (fault.kind == ResponseFault::Kind::kTwice) {
    scheduler_->PostEvent(due - scheduler_->Now() + fault.milliseconds,
                          [this, event] { Deliver(event.name, event.payload, 0); });
  }
}

// ---- Tasks -------------------------------------------------------------------------------------

int32_t SimulatedHost::PostTask(std::string_view name, KestTask run, void* context) {
  const bool queued = scheduler_->PostTask(name, [this, run, context, generation = generation_] {
    if (generation != generation_) return;
    const RunningCode code(RunningCode::Of::kPlugin);
    run(context);
  });
  return queued ? KEST_TASK_QUEUED : KEST_TASK_MERGED;
}

}  // namespace Kest::Host
