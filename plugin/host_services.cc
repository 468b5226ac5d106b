#include "plugin/host_services.h"

#include <algorithm>
#include <utility>

#include "plugin/boundary.h"
#include "plugin/once_promise.h"
#include "plugin/optional_services.h"
#include "plugin/text_view.h"

namespace Kest {

namespace {

constexpr std::string_view kNotSent = "The host did not take the request";

Response CopyResponse(const KestResponse& response) {
  Response copy;
  copy.status = response.status;
  copy.message = ToView(response.message);
  copy.contentType = ToView(response.contentType);
  copy.body = ToView(response.body);
  return copy;
}

}  // namespace

struct HostServices::PendingRequest {
  HostServices* host = nullptr;
  uint64_t serial = 0;        // they end in the order in which they began, also at stop
  Completion completion;      // of a request, or
  std::function<void()> run;  // of a task; none of both once it was cancelled
};

HostServices::HostServices(EntryGate& gate, RuntimeCounters& counters)
    : gate_(gate), counters_(counters) {}

HostServices::~HostServices() = default;

void HostServices::Attach(const KestHostServices* services) {
  services_ = services;
}

HostServices::PendingRequest* HostServices::AddPendingRequest(
    std::unique_ptr<PendingRequest> pending) {
  PendingRequest* added = pending.get();
  added->host = this;
  MutexLock hold(mutex_);
  added->serial = nextSerial_++;
  pendingRequests_.emplace(added->serial, std::move(pending));
  return added;
}

std::unique_ptr<HostServices::PendingRequest> HostServices::TakePendingRequest(
    const PendingRequest* pending) {
  MutexLock hold(mutex_);
  const auto found = pendingRequests_.find(pending->serial);
  if (found == pendingRequests_.end()) return nullptr;
  std::unique_ptr<PendingRequest> taken = std::move(found->second);
  pendingRequests_.erase(found);
  return taken;
}

void HostServices::Request(const HostRequest& request, Completion completion) {
  if (services_ == nullptr || IsStopping()) {
    completion(Failure{std::string(kFinalizing)});
    return;
  }
  KestRequest sent{};
  sent.method = ToText(MethodName(request.method));
  sent.url = ToText(request.url);
  sent.contentType = ToText(request.contentType);
  sent.body = ToBytes(request.body);
  auto owned = std::make_unique<PendingRequest>();
  owned->completion = std::move(completion);
  PendingRequest* pending = AddPendingRequest(std::move(owned));
  if (services_->request(services_, &sent, &OnCompletion, pending)) return;
  const std::unique_ptr<PendingRequest> refused = TakePendingRequest(pending);
  if (refused != nullptr) refused->completion(Failure{std::string(kNotSent)});
}

void HostServices::OnCompletion(void* context, const KestResponse* response) noexcept {
  auto* const pending = static_cast<PendingRequest*>(context);
  HostServices* const self = pending->host;
  const GateEntry entry(self->gate_);
  const std::unique_ptr<PendingRequest> taken = self->TakePendingRequest(pending);
  if (!entry || taken == nullptr || !taken->completion) return;
  Maybe<Response> copy = Failure{};
  RunAtBoundary([&] { copy = CopyResponse(*response); },
                [&copy](const char* text) noexcept { copy = Failure{CopyMessage(text)}; });
  RunAndLog("Request completion", [&] { taken->completion(std::move(copy)); });
}

bool HostServices::Subscribe(std::string_view name, EventHandler handler) {
  if (services_ == nullptr || IsStopping()) return false;
  // The record comes first: the host may deliver as soon as it knows the name.
  auto kept = std::make_shared<const EventHandler>(std::move(handler));
  {
    MutexLock hold(mutex_);
    handlers_.insert_or_assign(std::string(name), std::move(kept));
  }
  if (services_->subscribe(services_, ToText(name), &OnDelivery, this)) return true;
  DropHandler(name);
  return false;
}

bool HostServices::DropHandler(std::string_view name) {
  MutexLock hold(mutex_);
  const auto found = handlers_.find(name);
  if (found == handlers_.end()) return false;
  handlers_.erase(found);
  return true;
}

bool HostServices::Resubscribe(std::string_view name) {
  if (services_ == nullptr || IsStopping()) return false;
  return services_->subscribe(services_, ToText(name), &OnDelivery, this);
}

void HostServices::Unsubscribe(std::string_view name) {
  if (!DropHandler(name)) return;
  services_->unsubscribe(services_, ToText(name));
}

void HostServices::OnDelivery(void* context, KestText name, KestText /*contentType*/,
                              KestBytes body) noexcept {
  auto* const self = static_cast<HostServices*>(context);
  const GateEntry entry(self->gate_);
  if (!entry) return;
  RunAndLog("Event delivery", [self, name, body] {
    std::shared_ptr<const EventHandler> handler;
    {
      MutexLock hold(self->mutex_);
      const auto found = self->handlers_.find(ToView(name));
      if (found != self->handlers_.end()) handler = found->second;
    }
    if (handler == nullptr) return;
    ++self->counters_.eventsReceived;
    (*handler)(ToView(body));
  });
}

bool HostServices::Publish(std::string_view path, ResourceEventType type, std::string_view json) {
  if (services_ == nullptr) return false;
  if (type == ResourceEventType::kDelete) json = {};
  const bool published =
      services_->publish(services_, ToText(path), static_cast<int32_t>(type), ToBytes(json));
  if (published) ++counters_.eventsPublished;
  return published;
}

TaskPosting HostServices::PostTask(std::string_view name, std::function<void()> run) {
  if (services_ == nullptr || IsStopping()) return TaskPosting::kRefused;
  auto owned = std::make_unique<PendingRequest>();
  owned->run = std::move(run);
  PendingRequest* pending = AddPendingRequest(std::move(owned));
  const int32_t posting = services_->postTask(services_, ToText(name), &OnTask, pending);
  if (posting == KEST_TASK_QUEUED) return TaskPosting::kQueued;
  TakePendingRequest(pending);
  return posting == KEST_TASK_MERGED ? TaskPosting::kMerged : TaskPosting::kRefused;
}

void HostServices::OnTask(void* context) noexcept {
  auto* const pending = static_cast<PendingRequest*>(context);
  HostServices* const self = pending->host;
  const GateEntry entry(self->gate_);
  const std::unique_ptr<PendingRequest> taken = self->TakePendingRequest(pending);
  if (entry && taken != nullptr && taken->run) RunAndLog("Task", taken->run);
}

void HostServices::WaitBegin(std::string_view label) {
  if (services_ != nullptr) services_->waitBegin(services_, ToText(label));
}

void HostServices::WaitEnd() {
  if (services_ != nullptr) services_->waitEnd(services_);
}

void HostServices::Yield() {
  if (services_ != nullptr) services_->yield(services_);
}

int64_t HostServices::NowSeconds() const {
  return HostMilliseconds(services_) / 1000;
}

bool HostServices::CreateUuid(UuidBytes* uuid) {
  return CreateHostUuid(services_, uuid);
}

uint64_t HostServices::Cause() const {
  return HostCause(services_);
}

HostServices::CauseScope::CauseScope(HostServices& host, uint64_t cause)
    : host_(host), former_(host.Cause()) {
  SetHostCause(host_.services_, cause);
}

HostServices::CauseScope::~CauseScope() {
  SetHostCause(host_.services_, former_);
}

void HostServices::SendTelemetry(std::string_view name, std::string_view json) {
  if (services_ != nullptr) services_->telemetry(services_, ToText(name), ToBytes(json));
}

void HostServices::Identify(std::string_view fullName, std::string_view userAgent) {
  if (services_ != nullptr) services_->identify(services_, ToText(fullName), ToText(userAgent));
}

void HostServices::CancelAll() noexcept {
  HandlerMap handlers;
  {
    MutexLock hold(mutex_);
    handlers.swap(handlers_);
  }
  for (const auto& [name, handler] : handlers) services_->unsubscribe(services_, ToText(name));
  // One at a time: what a completion does may end others, and a list of all would need memory.
  for (;;) {
    Completion completion;
    std::function<void()> run;
    {
      MutexLock hold(mutex_);
      const auto open = std::find_if(
          pendingRequests_.begin(), pendingRequests_.end(),
          [](const auto& entry) { return entry.second->completion || entry.second->run; });
      if (open == pendingRequests_.end()) return;
      completion = std::exchange(open->second->completion, nullptr);
      run = std::exchange(open->second->run, nullptr);
    }
    if (!completion) continue;
    RunAndLog("Request completion", [&] { completion(Failure{std::string(kFinalizing)}); });
  }
}

void HostServices::Release() {
  PendingRequestMap late;
  MutexLock hold(mutex_);
  late.swap(pendingRequests_);
  services_ = nullptr;
}

}  // namespace Kest
