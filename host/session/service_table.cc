#include "host/session/service_table.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <exception>
#include <new>
#include <utility>

#include "host/cause/cause.h"
#include "host/json/json_text.h"
#include "host/library/sent_request.h"
#include "plugin/text_view.h"

namespace Kest::Host {
namespace {

constexpr uint64_t kUuidSeed = 0x9e3779b97f4a7c15;  // other numbers than the world's
constexpr std::string_view kEventTypes[] = {"Create", "Update", "Delete"};  // by KEST_EVENT_...

}  // namespace

struct ServiceTable::Sent : SentRequest {
  uint64_t row;  // of the timeline
};

// No exception leaves an entry: what runs out of memory counts as refused.
struct ServiceTable::Entries {
  static ServiceTable& Of(const KestHostServices* self) {
    return OwnedServices<ServiceTable>::Of(self);
  }

  template <typename Result, typename Call>
  static Result Guarded(const KestHostServices* self, Result refused, Call call) noexcept {
    try {
      return call(Of(self));
    } catch (const std::exception& failure) {
      Of(self).wiring_.log->Write(LogLevel::kError, failure.what());
    } catch (...) {
      Of(self).wiring_.log->Write(LogLevel::kError, "Unknown exception in a host service");
    }
    return refused;
  }
  // For an entry that returns nothing and belongs on a task.
  template <typename Call>
  static void OnTask(const KestHostServices* self, std::string_view entry, Call call) noexcept {
    Guarded(self, false, [&](ServiceTable& services) {
      if (services.CheckTask(entry)) call(services);
      return true;
    });
  }

  static bool Request(const KestHostServices* self, const KestRequest* request,
                      KestCompletion completion, void* context) {
    return Guarded(self, false, [&](ServiceTable& services) {
      return services.CheckTask("request") && request != nullptr && completion != nullptr &&
             services.Request(*request, completion, context);
    });
  }
  static bool Subscribe(const KestHostServices* self, KestText name, KestDelivery delivery,
                        void* context) {
    return Guarded(self, false, [&](ServiceTable& services) {
      return services.CheckTask("subscribe") && delivery != nullptr &&
             services.Subscribe(ToView(name), delivery, context);
    });
  }
  static void Unsubscribe(const KestHostServices* self, KestText name) {
    OnTask(self, "unsubscribe",
           [&](ServiceTable& services) { services.subscriptions_.Remove(ToView(name)); });
  }
  static bool Publish(const KestHostServices* self, KestText path, int32_t eventType,
                      KestBytes json) {
    return Guarded(self, false, [&](ServiceTable& services) {
      return services.CheckTask("publish") &&
             services.Publish(ToView(path), eventType, ToView(json));
    });
  }
  static int32_t PostTask(const KestHostServices* self, KestText name, KestTask run,
                          void* context) {
    return Guarded(self, int32_t{KEST_TASK_REFUSED}, [&](ServiceTable& services) {
      return services.PostTask(ToView(name), run, context);
    });
  }
  static void WaitBegin(const KestHostServices* self, KestText label) {
    OnTask(self, "waitBegin",
           [&](ServiceTable& services) { services.wiring_.scheduler->WaitBegin(ToView(label)); });
  }
  static void WaitEnd(const KestHostServices* self) {
    OnTask(self, "waitEnd", [](ServiceTable& services) { services.wiring_.scheduler->WaitEnd(); });
  }
  static void Yield(const KestHostServices* self) {
    OnTask(self, "yield", [](ServiceTable& services) { services.wiring_.scheduler->Yield(); });
  }
  static void Log(const KestHostServices* self, int32_t level, KestText line) {
    Guarded(self, false, [&](ServiceTable& services) {
      services.wiring_.log->Append(static_cast<LogLevel>(level), ToView(line));
      services.wiring_.traffic->Rows().Add({.kind = RowKind::kLog,
                                            .name = "plugin",
                                            .status = std::string(LogLevelName(level)),
                                            .summary = std::string(ToView(line))});
      return true;
    });
  }
  static void Telemetry(const KestHostServices* self, KestText name, KestBytes json) {
    OnTask(self, "telemetry", [&](ServiceTable& services) {
      std::string line = "/telemetry/v1/events/";
      line.append(ToView(name)).append(" ").append(ToView(json));
      services.wiring_.log->Write(LogLevel::kOkay, line);
    });
  }
  static void Identify(const KestHostServices* self, KestText, KestText userAgent) {
    OnTask(self, "identify",
           [&](ServiceTable& services) { services.userAgent_ = ToView(userAgent); });
  }
  static int64_t Now(const KestHostServices* self) { return Of(self).wiring_.clock->Now(); }
  static bool CreateUuid(const KestHostServices* self, uint8_t* uuid) {
    Of(self).FillUuid(uuid);
    return true;
  }
  static uint64_t Cause(const KestHostServices*) { return CurrentCause(); }
  static void SetCause(const KestHostServices* self, uint64_t cause) {
    OnTask(self, "setCause", [cause](ServiceTable&) { SetCurrentCause(cause); });
  }
};

ServiceTable::ServiceTable(Wiring wiring)
    : wiring_(wiring),
      services_(OwnedServices<ServiceTable>::Make<Entries>(this)),
      subscriptions_(wiring.scheduler),
      uuids_(wiring.seed ^ kUuidSeed) {
  wiring.world->FollowFaults([traffic = wiring.traffic, observer = wiring.observer](
                                 std::string_view name, std::string_view action) {
    observer->OnFault(name);
    traffic->Rows().Add(
        {.kind = RowKind::kFault, .name = std::string(name), .status = std::string(action)});
  });
}

ServiceTable::~ServiceTable() {
  Close();
}

void ServiceTable::Close() {
  subscriptions_.Clear();
  held_.clear();
  wiring_.scheduler->Drop(this);
}

bool ServiceTable::CheckTask(std::string_view entry) const {
  if (wiring_.scheduler->OnTask()) return true;
  wiring_.log->Write(
      LogLevel::kError,
      std::string("The plugin called ").append(entry).append(" outside a module task; refused."));
  return false;
}

// ---- Requests of the plugin --------------------------------------------------------------------

bool ServiceTable::Request(const KestRequest& request, KestCompletion completion, void* context) {
  Sent sent{SentRequest::Copy(request, completion, context), 0};
  const std::string name = "request " + sent.method + " " + sent.url;
  sent.row = wiring_.traffic->AddRequest(sent.method, sent.url, {sent.contentType, sent.body});
  const uint64_t cause = sent.row;
  const auto posted =
      wiring_.scheduler->Post({.name = name,
                               .work = [this, sent = std::move(sent)] { Complete(sent); },
                               .owner = this,
                               .cause = cause});
  return posted != Scheduler::Posted::kRefused;
}

void ServiceTable::Complete(const Sent& sent) {
  WorldResponse result;
  try {
    result = wiring_.world->Request(sent.method, sent.url, sent.contentType, sent.body);
    DispatchWorldEvents(/*isControl=*/false);
    if (sent.method == "POST" && wiring_.worldChanged) wiring_.worldChanged();
  } catch (const std::bad_alloc&) {  // a completion that never came would be waited for
    result = {.status = 500, .contentType = {}, .body = {}, .message = "Out of memory"};
  }
  if (result.isLost) return;
  const Caller caller{sent.completion, sent.context, sent.row, sent.url};
  if (result.heldAs != 0) {
    held_[result.heldAs] = caller;
  } else if (result.delayMilliseconds > 0) {
    RespondLater(caller, std::move(result));
  } else {
    Respond(caller, result);
  }
}

void ServiceTable::Respond(const Caller& caller, const WorldResponse& result) {
  const CauseScope scope(wiring_.traffic->AddResponse(
      caller.row, caller.url, result.status, result.message, {result.contentType, result.body}));
  const KestResponse response = {result.status, ToText(result.message), ToText(result.contentType),
                                 ToBytes(result.body)};
  caller.completion(caller.context, &response);
}

void ServiceTable::RespondLater(const Caller& caller, WorldResponse result) {
  const std::chrono::milliseconds delay(result.delayMilliseconds);
  auto respond = [this, caller, result = std::move(result)] { Respond(caller, result); };
  wiring_.scheduler->PostAfter(
      delay, {.name = "delayed response", .work = std::move(respond), .owner = this});
}

void ServiceTable::DispatchReleased() {
  for (ReleasedResponse& released : wiring_.world->TakeReleased()) {
    const auto caller = held_.extract(released.heldAs);
    if (!caller.empty()) RespondLater(caller.mapped(), std::move(released.response));
  }
}

// ---- Events to the plugin ----------------------------------------------------------------------

bool ServiceTable::Subscribe(std::string_view name, KestDelivery delivery, void* context) {
  if (!PluginSubscriptions::IsKnown(name)) return false;
  subscriptions_.Add(name, delivery, context);
  if (!name.starts_with(kResourceEventPrefix)) return true;
  if (auto present = wiring_.world->PresentValue(name.substr(kResourceEventPrefix.size()))) {
    WhenDue(present->delayMilliseconds, [this, event = std::move(*present)] {
      subscriptions_.QueueResourceEvent(event.name, event.payload);
    });
  }
  return true;
}

void ServiceTable::QueueResourceEvent(std::string_view name, std::string_view payload) {
  const CauseScope scope(wiring_.traffic->AddResourceEvent(name, payload));
  wiring_.observer->OnResourceEvent();
  subscriptions_.QueueResourceEvent(name, payload);
  const std::string_view kind = PluginSubscriptions::KindOf(name);
  if (kind != name) subscriptions_.QueueResourceEvent(kind, payload);
}

void ServiceTable::WhenDue(int delayMilliseconds, Scheduler::Work work) {
  if (delayMilliseconds <= 0) return work();
  wiring_.scheduler->PostAfter(std::chrono::milliseconds(delayMilliseconds),
                               {.name = "delayed event", .work = std::move(work), .owner = this});
}

void ServiceTable::DispatchWorldEvents(bool isControl) {
  std::vector<WorldEvent> events = wiring_.world->TakeEvents();
  wiring_.observer->OnWorldCall(*wiring_.world, events, isControl);
  for (WorldEvent& event : events) {
    const int delay = std::max(0, event.delayMilliseconds);
    if (event.channel != WorldEvent::Channel::kService) {
      WhenDue(delay,
              [this, event = std::move(event)] { QueueResourceEvent(event.name, event.payload); });
    } else if (event.comesFirst) {
      DeliverServiceEvent({std::move(event.name), std::move(event.payload), event.cause});
    } else {
      wiring_.serviceEvents->Post(std::chrono::milliseconds(delay),
                                  {std::move(event.name), std::move(event.payload), event.cause});
    }
  }
  DispatchReleased();
}

void ServiceTable::DeliverServiceEvent(const ServiceEventThread::Event& event) {
  const CauseScope scope(wiring_.traffic->AddServiceEvent(event.name, event.payload, event.cause));
  wiring_.observer->OnServiceEvent(event.cause);
  bool followed = subscriptions_.DeliverServiceEvent(event.name, event.payload);
  const std::string_view kind = PluginSubscriptions::KindOf(event.name);
  if (kind != event.name) followed |= subscriptions_.DeliverServiceEvent(kind, event.payload);
  if (!followed) wiring_.log->Write(LogLevel::kWarning, "No one follows " + event.name);
}

// ---- Publication and tasks ---------------------------------------------------------------------

bool ServiceTable::Publish(std::string_view path, int32_t eventType, std::string_view json) {
  if (path.empty() || eventType < KEST_EVENT_CREATE || eventType > KEST_EVENT_DELETE) return false;
  const bool deleted = eventType == KEST_EVENT_DELETE;
  if (deleted ? !json.empty() : !IsJson(json)) {
    wiring_.log->Write(LogLevel::kError,
                       std::string("Not published, the value is no JSON: ").append(path));
    return false;
  }
  Stream(path, eventType, json);
  return true;
}

void ServiceTable::Stream(std::string_view path, int32_t eventType, std::string_view json) {
  const CallFault fault = wiring_.world->PublishedFault(path).value_or(CallFault{});
  if (fault.action == FaultAction::kDrop) return;
  if (fault.action == FaultAction::kDouble) AppendEvent(path, eventType, json);
  if (!fault.delay) return AppendEvent(path, eventType, json);
  WhenDue(static_cast<int>(*fault.delay),
          [this, uri = std::string(path), eventType, data = std::string(json)] {
            AppendEvent(uri, eventType, data);
          });
}

void ServiceTable::AppendEvent(std::string_view path, int32_t eventType, std::string_view json) {
  const std::string_view type = kEventTypes[eventType];
  const uint64_t event = wiring_.stream->Append(path, type, json);
  wiring_.traffic->Rows().Add({.kind = RowKind::kEvent,
                               .name = std::string(path),
                               .status = std::string(type),
                               .payload = std::string(json),
                               .payloadType = json.empty() ? "" : "application/json",
                               .event = event});
  wiring_.observer->OnPublished(event, path, eventType, json);
}

void ServiceTable::FillUuid(uint8_t* uuid) {
  const MutexLock lock(uuidMutex_);
  const std::array<uint64_t, 2> bits = {uuids_.Bits(), uuids_.Bits()};
  std::memcpy(uuid, bits.data(), sizeof(bits));
  uuid[6] = static_cast<uint8_t>((uuid[6] & 0x0f) | 0x40);  // version 4: random
  uuid[8] = static_cast<uint8_t>((uuid[8] & 0x3f) | 0x80);  // the common variant
}

int32_t ServiceTable::PostTask(std::string_view name, KestTask run, void* context) {
  if (run == nullptr) return KEST_TASK_REFUSED;
  auto work = [timeline = &wiring_.traffic->Rows(), name = std::string(name), run, context] {
    const uint64_t row = timeline->Add({.kind = RowKind::kTask, .name = name});
    const CauseScope scope(row);
    run(context);
    timeline->End(row);
  };
  const auto posted = wiring_.scheduler->Post(
      {.name = std::string(name), .work = std::move(work), .owner = this, .merge = !name.empty()});
  switch (posted) {
    case Scheduler::Posted::kQueued:
      return KEST_TASK_QUEUED;
    case Scheduler::Posted::kMerged:
      return KEST_TASK_MERGED;
    case Scheduler::Posted::kRefused:
      break;
  }
  return KEST_TASK_REFUSED;
}

}  // namespace Kest::Host
