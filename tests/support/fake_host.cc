#include "tests/support/fake_host.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "base/platform.h"
#include "binding/json/json_adapter.h"
#include "plugin/text_view.h"

namespace Kest::Testing {

namespace {

using Self = const KestHostServices*;

constexpr std::string_view kResourceEvent = "OnJsonApiEvent";
constexpr std::string_view kInvokePath = "/tav-login/v1/session/invoke";
constexpr std::string_view kUuidPath = "/tav-login/v1/service-proxy-uuid-requests";
constexpr std::string_view kMethodPath = "/tav-login/v1/service-proxy-method-requests";

[[noreturn]] void GiveUp(const char* why, std::string_view about) {
  std::fprintf(stderr, "%s %s\n", why, std::string(about).c_str());
  std::abort();
}

std::string Quoted(std::string_view text) {
  ConversionContext context;
  std::string json;
  WriteJsonValue(context, std::string(text), &json);
  return json;
}

// {"a":1,"b":2} of names and JSON texts; a member without a text is left out.
std::string JsonObject(std::initializer_list<std::pair<std::string_view, std::string>> members) {
  std::string json;
  for (const auto& [name, value] : members) {
    if (value.empty()) continue;
    json.append(json.empty() ? "{" : ",").append(Quoted(name)).append(":").append(value);
  }
  return json + "}";
}

std::string ResourceEventJson(std::string_view path, std::string_view type, std::string_view json) {
  return JsonObject(
      {{"uri", Quoted(path)}, {"eventType", Quoted(type)}, {"data", std::string(json)}});
}

}  // namespace

FakeHost::FakeHost() {
  FillTable();
}

FakeHost::~FakeHost() {
  if (block_.context != nullptr && !stopped_) Stop();
  RunUntilIdle();
  if (!runner_.End()) GiveUp("Module tasks still wait at the end of the test.", {});
}

// ---- The plugin's life --------------------------------------------------------------------------

void FakeHost::Load(const std::function<void(KestHandshakeBlock*)>& handshake) {
  block_ = {};
  block_.major = 18;  // newer than the plugin, to distinguish the two
  block_.patch = 3;
  handshake(&block_);
}

bool FakeHost::Start() {
  Step("start");
  const auto started = std::make_shared<bool>(false);  // start may go on after this call
  RunTask([this, started] { *started = block_.callbacks->start(block_.context, Services()); });
  return *started;
}

void FakeHost::Stop() {
  Step("stop");
  RunTask([this] {
    block_.callbacks->stop(block_.context);
    stopped_ = true;
  });
  if (!stopped_) GiveUp("Stop does not return:", block_.fullName);
}

void FakeHost::AdvanceSeconds(int64_t seconds) {
  Step(std::to_string(seconds) + " s later");
  now_ += seconds * 1000;
}

// ---- Tasks --------------------------------------------------------------------------------------

void FakeHost::RunTask(Work work) {
  runner_.Post(std::move(work));
  RunUntilIdle();
}

void FakeHost::Record(Action action) {
  ActionLog::Record(std::move(action));
  runner_.NoteProgress();
}

int32_t FakeHost::OnPostTask(std::string_view name, KestTask run, void* context) {
  const std::string key(name);
  {
    const std::lock_guard lock(mutex_);
    const bool merged = !refuse_ && waitingTasks_.contains(key);
    Record({Action::kPost, key, refuse_ ? "refused" : merged ? "merged" : ""});
    if (refuse_) return KEST_TASK_REFUSED;
    if (merged) return KEST_TASK_MERGED;
    waitingTasks_.insert(key);
  }
  Work task = [this, key, run, context] {
    if (stopped_) return;
    {
      const std::lock_guard lock(mutex_);
      waitingTasks_.erase(key);
      Record({Action::kRun, key});
    }
    run(context);
  };
  if (!holdTasks_) {
    runner_.Post(std::move(task));
  } else {
    const std::lock_guard lock(mutex_);
    heldTasks_.push_back(std::move(task));
  }
  return KEST_TASK_QUEUED;
}

void FakeHost::RunHeldTasks() {
  while (!heldTasks_.empty()) {
    Step("run the first held task");
    Work task = std::move(heldTasks_.front());
    heldTasks_.pop_front();
    RunTask(std::move(task));
  }
}

// ---- Requests of the plugin ---------------------------------------------------------------------

void FakeHost::OnRequest(std::string_view method, std::string_view path, FakeResponse response) {
  responses_[{std::string(method), std::string(path)}] = std::move(response);
}

void FakeHost::OnService(std::string_view service, std::string_view method,
                         ServiceHandler handler) {
  services_[{std::string(service), std::string(method)}] = std::move(handler);
}

bool FakeHost::OnHostRequest(const KestRequest& request, KestCompletion completion, void* context) {
  const FakeRequest copy{std::string(ToView(request.method)), std::string(ToView(request.url)),
                         std::string(ToView(request.body))};
  Record({Action::kRequest, copy.method + " " + copy.url, copy.body});
  if (refuse_) return false;
  const std::string path = copy.Path();
  const FakeResponse response = ResponseTo(copy, path);
  Queue(path, response.held, [this, completion, context, response] {
    if (stopped_) return;
    KestResponse view{};
    view.status = response.status;
    view.message = ToText(response.message);
    view.contentType = response.body.empty() ? KestText{} : ToText(response.contentType);
    view.body = ToBytes(response.body);
    completion(context, &view);
  });
  return true;
}

FakeResponse FakeHost::ResponseTo(const FakeRequest& request, const std::string& path) {
  const auto response = responses_.find({request.method, path});
  if (response != responses_.end()) return response->second;
  if (path == kInvokePath || path == kUuidPath || path == kMethodPath) {
    return RespondToServiceCall(request, path);
  }
  const auto resource = resources_.find(path);
  if (request.method != "GET" || resource == resources_.end()) return {404, "", "Not found"};
  return {200, resource->second};
}

FakeResponse FakeHost::RespondToServiceCall(const FakeRequest& request, const std::string& path) {
  ConversionContext context;
  const BindingProperty call = ReadJson(context, request.body);
  if (!context.Ok()) GiveUp("A service call with a bad body:", request.body);
  const std::string service(call.FindMember("serviceName")->AsString());
  const std::string method(call.FindMember("methodName")->AsString());
  const auto handler = services_.find({service, method});
  const bool known = handler != services_.end();
  ServiceReply reply{{}, "Unknown method"};
  if (known) reply = handler->second(request.body);
  if (path == kInvokePath) {
    const int32_t status = reply.error.empty() ? 200 : 500;
    return {reply.status != 0 ? reply.status : status, reply.payload, reply.error,
            "application/json", reply.held};
  }
  const bool byUuid = path == kUuidPath;
  const std::string uuid = byUuid ? Quoted("uuid-" + std::to_string(++nextUuid_)) : "\"\"";
  if (known) {
    Queue(method, reply.held, [this, byUuid, uuid, service, method, reply] {
      DeliverEvent(byUuid ? "OnServiceProxyUuidEvent" : "OnServiceProxyMethodEvent",
                   JsonObject({{"uuid", uuid},
                               {"serviceName", Quoted(service)},
                               {"methodName", Quoted(method)},
                               {"payload", Quoted(reply.payload)},
                               {"status", Quoted(reply.error.empty() ? "OK" : "ERROR")},
                               {"error", Quoted(reply.error)}}));
    });
  }
  return byUuid ? FakeResponse{200, uuid} : FakeResponse{204, ""};
}

void FakeHost::Queue(std::string_view key, bool isHeld, std::function<void()> work) {
  if (isHeld) return held_.push_back({std::string(key), std::move(work)});
  runner_.Post(std::move(work));
}

void FakeHost::ReleaseHeld(std::string_view pathOrMethod) {
  Step(std::string("release ").append(pathOrMethod));
  for (Held& held : std::exchange(held_, {})) {
    const bool due = pathOrMethod.empty() || held.key == pathOrMethod;
    Queue(held.key, !due, std::move(held.release));
  }
  RunUntilIdle();
}

// ---- Events -------------------------------------------------------------------------------------

void FakeHost::SetResource(std::string_view path, std::string_view json) {
  const bool isNew = resources_.insert_or_assign(std::string(path), std::string(json)).second;
  NotifyFollowers(path, isNew ? "Create" : "Update", json);
}

void FakeHost::RemoveResource(std::string_view path) {
  resources_.erase(std::string(path));
  NotifyFollowers(path, "Delete", {});
}

void FakeHost::Login(uint64_t summonerId, std::string_view state, uint64_t accountId) {
  SetResource("/tav-login/v1/session", JsonObject({{"state", Quoted(state)},
                                                   {"summonerId", std::to_string(summonerId)},
                                                   {"accountId", std::to_string(accountId)}}));
}

void FakeHost::NotifyFollowers(std::string_view path, std::string_view type,
                               std::string_view json) {
  Step(std::string(type).append(" ").append(path).append(" ").append(json));
  const std::string event = ResourceEventJson(path, type, json);
  DeliverEvent(std::string(kResourceEvent).append("_").append(path), event);
  DeliverEvent(kResourceEvent, event);
  RunUntilIdle();
}

FakeHost::Subscription FakeHost::SubscriptionOf(std::string_view name) const {
  const std::lock_guard lock(mutex_);
  const auto found = subscriptions_.find(name);
  return found != subscriptions_.end() ? found->second : Subscription{};
}

void FakeHost::DeliverEvent(std::string_view name, std::string_view json) {
  const uint64_t serial = SubscriptionOf(name).serial;
  auto deliver = [this, serial, key = std::string(name), body = std::string(json)] {
    const Subscription subscription = SubscriptionOf(key);
    if (subscription.delivery == nullptr || subscription.serial != serial) return;
    Record({Action::kEvent, key, body});
    subscription.delivery(subscription.context, ToText(key), ToText("application/json"),
                          ToBytes(body));
  };
  const bool isResourceEvent =
      !name.starts_with("OnServiceProxy") && !name.starts_with("OnSvdsEvent");
  isResourceEvent ? runner_.Post(std::move(deliver)) : runner_.PostServiceEvent(std::move(deliver));
}

bool FakeHost::OnSubscribe(std::string_view name, KestDelivery delivery, void* context) {
  {
    const std::lock_guard lock(mutex_);
    Record({Action::kSubscribe, std::string(name)});
    if (refuse_) return false;
    subscriptions_.insert_or_assign(std::string(name),
                                    Subscription{delivery, context, ++nextSubscription_});
  }
  if (name.size() <= kResourceEvent.size() || !name.starts_with(kResourceEvent)) return true;
  const std::string_view path = name.substr(kResourceEvent.size() + 1);
  const auto resource = resources_.find(path);
  if (resource != resources_.end()) {
    DeliverEvent(name, ResourceEventJson(path, "Create", resource->second));
  }
  return true;
}

// ---- Requests to the plugin ---------------------------------------------------------------------

std::shared_ptr<const FakeHost::Reply> FakeHost::StartRequest(std::string_view method,
                                                              std::string_view url,
                                                              std::string_view body) {
  Step(std::string(method).append(" ").append(url).append(" ").append(body));
  auto reply = std::make_shared<Reply>();
  runner_.Post([this, reply, verb = std::string(method), target = std::string(url),
                content = std::string(body)] {
    KestRequest request{};
    request.method = ToText(verb);
    request.url = ToText(target);
    request.contentType = ToText(content.empty() ? "" : "application/json");
    request.body = ToBytes(content);
    TakeReply(block_.api->request(block_.context, &request), reply.get());
    Record({Action::kResponse, verb + " " + target,
            std::to_string(reply->status) + " " + reply->body + reply->message});
  });
  return reply;
}

FakeHost::Reply FakeHost::Request(std::string_view method, std::string_view url,
                                  std::string_view body) {
  const std::shared_ptr<const Reply> reply = StartRequest(method, url, body);
  RunUntilIdle();
  return *reply;
}

FakeHost::Reply FakeHost::Invoke(std::string_view function) {
  const auto reply = std::make_shared<Reply>();
  RunTask([this, reply, name = std::string(function)] {
    TakeReply(block_.api->invoke(block_.context, ToText(name), nullptr, 0), reply.get());
  });
  return *reply;
}

void FakeHost::TakeReply(const KestResponse* response, Reply* reply) {
  *reply = {response->status, std::string(ToView(response->message)),
            std::string(ToView(response->contentType)), std::string(ToView(response->body)), true};
  block_.api->release(block_.context, response);
}

std::vector<std::string> FakeHost::Subscriptions() const {
  const std::lock_guard lock(mutex_);
  std::vector<std::string> names;
  for (const auto& [name, subscription] : subscriptions_) names.push_back(name);
  return names;
}

// ---- The service table --------------------------------------------------------------------------

// The host that the table belongs to, for an entry that belongs on a module task.
FakeHost& FakeHost::OnTask(Self self, const char* entry) {
  FakeHost& host = *static_cast<const Table*>(self)->host;
  EXPECT_TRUE(host.runner_.OnTask()) << entry << " was called outside a module task";
  return host;
}

void FakeHost::FillTable() {
  table_.host = this;
  table_.size = sizeof(KestHostServices);
  table_.request = [](Self self, const KestRequest* request, KestCompletion completion,
                      void* context) {
    return OnTask(self, "request").OnHostRequest(*request, completion, context);
  };
  table_.subscribe = [](Self self, KestText name, KestDelivery delivery, void* context) {
    return OnTask(self, "subscribe").OnSubscribe(ToView(name), delivery, context);
  };
  table_.unsubscribe = [](Self self, KestText name) {
    FakeHost& host = OnTask(self, "unsubscribe");
    const std::lock_guard lock(host.mutex_);
    host.Record({Action::kUnsubscribe, std::string(ToView(name))});
    host.subscriptions_.erase(std::string(ToView(name)));
  };
  table_.publish = [](Self self, KestText path, int32_t type, KestBytes json) {
    constexpr const char* kTypes[] = {"Create ", "Update ", "Delete "};
    FakeHost& host = OnTask(self, "publish");
    host.Record({Action::kPublish, std::string(kTypes[type]).append(ToView(path)),
                 std::string(ToView(json))});
    if (const Work work = std::exchange(host.onNextPublish_, nullptr)) work();
    return true;
  };
  table_.postTask = [](Self self, KestText name, KestTask run, void* context) {
    return static_cast<const Table*>(self)->host->OnPostTask(ToView(name), run, context);
  };
  table_.waitBegin = [](Self self, KestText label) {
    OnTask(self, "waitBegin").Record({Action::kWait, std::string(ToView(label))});
  };
  table_.waitEnd = [](Self self) { OnTask(self, "waitEnd").Record({Action::kWaitEnd, {}}); };
  table_.yield = [](Self self) { OnTask(self, "yield").runner_.Yield(); };
  table_.log = [](Self self, int32_t level, KestText line) {
    std::string text(ToView(line));
    static_cast<const Table*>(self)->host->Record(
        {Action::kLog, text.substr(0, text.find_last_not_of('\n') + 1), {}, level});
  };
  table_.telemetry = [](Self self, KestText, KestBytes) { OnTask(self, "telemetry"); };
  table_.identify = [](Self self, KestText fullName, KestText userAgent) {
    OnTask(self, "identify")
        .Record({Action::kIdentify, std::string(ToView(fullName)), std::string(ToView(userAgent))});
  };
  table_.now = [](Self self) { return static_cast<const Table*>(self)->host->now_.load(); };
  table_.createUuid = [](Self self, uint8_t* uuid) {
    std::fill_n(uuid, UuidBytes().size(), uint8_t{0xab});
    return static_cast<const Table*>(self)->host->hasUuids_.load();
  };
}

}  // namespace Kest::Testing
