#include "tests/support/fake_host.h"

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
  SetClockForTests(kStartOfTime * 1000);
}

FakeHost::~FakeHost() {
  if (block_.context != nullptr && !stopped_) Stop();
  pump_.RunUntilIdle();
  ResetClockForTests();
}

// ---- The plugin's life --------------------------------------------------------------------------

void FakeHost::Load(const std::function<void(KestHandshakeBlock*)>& handshake) {
  block_ = {};
  block_.major = 18;
  handshake(&block_);
}

bool FakeHost::Start() {
  const auto started = std::make_shared<bool>(false);  // start may go on after this call
  RunTask([this, started] { *started = block_.callbacks->start(block_.context, Services()); });
  return *started;
}

void FakeHost::Stop() {
  RunTask([this] {
    block_.callbacks->stop(block_.context);
    stopped_ = true;
  });
  if (!stopped_) GiveUp("Stop does not return:", block_.fullName);
}

void FakeHost::AdvanceSeconds(int64_t seconds) {
  AdvanceClockForTests(seconds * 1000);
}

// ---- Requests of the plugin ---------------------------------------------------------------------

void FakeHost::OnRequest(std::string_view method, std::string_view path, RequestHandler handler) {
  handlers_[{std::string(method), std::string(path)}] = std::move(handler);
}

void FakeHost::OnRequest(std::string_view method, std::string_view path, FakeAnswer answer) {
  OnRequest(method, path, [answer = std::move(answer)](const FakeRequest&) { return answer; });
}

void FakeHost::OnService(std::string_view service, std::string_view method,
                         ServiceHandler handler) {
  services_[{std::string(service), std::string(method)}] = std::move(handler);
}

bool FakeHost::OnHostRequest(const KestRequest& request, KestCompletion completion, void* context) {
  const FakeRequest copy{std::string(ToView(request.method)), std::string(ToView(request.url)),
                         std::string(ToView(request.body))};
  requests_.push_back(copy);
  if (refuse_) return false;
  const std::string path = copy.Path();
  const FakeAnswer answer = AnswerTo(copy, path);
  Queue(path, answer.held, [this, completion, context, answer] {
    if (stopped_) return;
    KestResponse response{};
    response.status = answer.status;
    response.message = ToText(answer.message);
    response.contentType = answer.body.empty() ? KestText{} : ToText(answer.contentType);
    response.body = ToBytes(answer.body);
    completion(context, &response);
  });
  return true;
}

FakeAnswer FakeHost::AnswerTo(const FakeRequest& request, const std::string& path) {
  const auto handler = handlers_.find({request.method, path});
  if (handler != handlers_.end()) return handler->second(request);
  if (path == kInvokePath || path == kUuidPath || path == kMethodPath) {
    return AnswerServiceCall(request, path);
  }
  const auto resource = resources_.find(path);
  if (request.method != "GET" || resource == resources_.end()) return {404, "", "Not found"};
  return {200, resource->second};
}

FakeAnswer FakeHost::AnswerServiceCall(const FakeRequest& request, const std::string& path) {
  ConversionContext context;
  const BindingProperty call = ReadJson(context, request.body);
  if (!context.Ok()) GiveUp("A service call with a bad body:", request.body);
  const std::string service(call.FindMember("serviceName")->AsString());
  const std::string method(call.FindMember("methodName")->AsString());
  serviceCalls_[{service, method}].push_back(request.body);
  const auto handler = services_.find({service, method});
  const bool known = handler != services_.end();
  ServiceReply reply{{}, "Unknown method", false};
  if (known) reply = handler->second(request.body);
  if (path == kInvokePath) {
    return {reply.error.empty() ? 200 : 500, reply.payload, reply.error, "application/json",
            reply.held};
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
  return byUuid ? FakeAnswer{200, uuid} : FakeAnswer{204, ""};
}

void FakeHost::Queue(std::string_view key, bool isHeld, std::function<void()> work) {
  if (isHeld) return held_.push_back({std::string(key), std::move(work)});
  pump_.Post(std::move(work));
}

void FakeHost::ReleaseHeld(std::string_view pathOrMethod) {
  for (Held& held : std::exchange(held_, {})) {
    const bool due = pathOrMethod.empty() || held.key == pathOrMethod;
    Queue(held.key, !due, std::move(held.release));
  }
  RunUntilIdle();
}

// ---- Events -------------------------------------------------------------------------------------

void FakeHost::SetResource(std::string_view path, std::string_view json) {
  const bool isNew = resources_.insert_or_assign(std::string(path), std::string(json)).second;
  TellFollowers(path, isNew ? "Create" : "Update", json);
}

void FakeHost::RemoveResource(std::string_view path) {
  resources_.erase(std::string(path));
  TellFollowers(path, "Delete", {});
}

void FakeHost::Login(uint64_t summonerId, std::string_view state, uint64_t accountId) {
  SetResource("/tav-login/v1/session", JsonObject({{"state", Quoted(state)},
                                                   {"summonerId", std::to_string(summonerId)},
                                                   {"accountId", std::to_string(accountId)}}));
}

void FakeHost::SendSvds(std::string_view subtopic, std::string_view bodyJson) {
  DeliverEvent(std::string("OnSvdsEvent_").append(subtopic),
               JsonObject({{"clientId", Quoted("client")},
                           {"subtopic", Quoted(subtopic)},
                           {"typeName", Quoted(subtopic)},
                           {"body", std::string(bodyJson)}}));
  RunUntilIdle();
}

void FakeHost::TellFollowers(std::string_view path, std::string_view type, std::string_view json) {
  const std::string event = ResourceEventJson(path, type, json);
  DeliverEvent(std::string(kResourceEvent).append("_").append(path), event);
  DeliverEvent(kResourceEvent, event);
  RunUntilIdle();
}

void FakeHost::DeliverEvent(std::string_view name, std::string_view json) {
  const auto subscriptionOf = [this](std::string_view key) {
    const std::lock_guard hold(mutex_);
    const auto found = subscriptions_.find(key);
    return found != subscriptions_.end() ? found->second : Subscription{};
  };
  const uint64_t serial = subscriptionOf(name).serial;
  auto deliver = [subscriptionOf, serial, key = std::string(name), body = std::string(json)] {
    const Subscription subscription = subscriptionOf(key);
    if (subscription.delivery == nullptr || subscription.serial != serial) return;
    subscription.delivery(subscription.context, ToText(key), ToText("application/json"),
                          ToBytes(body));
  };
  if (name.starts_with("OnServiceProxy") || name.starts_with("OnSvdsEvent")) {
    pump_.PostOnThread(std::move(deliver));
  } else {
    pump_.Post(std::move(deliver));
  }
}

bool FakeHost::OnSubscribe(std::string_view name, KestDelivery delivery, void* context) {
  subscriptionLog_.push_back(std::string("+").append(name));
  if (refuse_) return false;
  {
    const std::lock_guard hold(mutex_);
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

void FakeHost::OnUnsubscribe(std::string_view name) {
  subscriptionLog_.push_back(std::string("-").append(name));
  const std::lock_guard hold(mutex_);
  subscriptions_.erase(std::string(name));
}

// ---- Tasks and requests to the plugin -----------------------------------------------------------

int32_t FakeHost::OnPostTask(std::string_view name, KestTask run, void* context) {
  if (refuse_) return KEST_TASK_REFUSED;
  const std::string key(name);
  const std::lock_guard hold(mutex_);
  postedTasks_.push_back(key);
  if (!waitingTasks_.insert(key).second) return KEST_TASK_MERGED;
  pump_.Post([this, key, run, context] {
    {
      const std::lock_guard holdAgain(mutex_);
      waitingTasks_.erase(key);
    }
    if (!stopped_) run(context);
  });
  return KEST_TASK_QUEUED;
}

void FakeHost::RunTask(std::function<void()> work) {
  pump_.Post(std::move(work));
  RunUntilIdle();
}

std::shared_ptr<const FakeHost::Reply> FakeHost::StartRequest(std::string_view method,
                                                              std::string_view url,
                                                              std::string_view body) {
  auto reply = std::make_shared<Reply>();
  pump_.Post([this, reply, verb = std::string(method), target = std::string(url),
              content = std::string(body)] {
    KestRequest request{};
    request.method = ToText(verb);
    request.url = ToText(target);
    request.contentType = ToText(content.empty() ? "" : "application/json");
    request.body = ToBytes(content);
    TakeReply(block_.api->request(block_.context, &request), reply.get());
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

// ---- What the plugin did ------------------------------------------------------------------------

std::vector<std::string> FakeHost::Published(std::string_view path) const {
  std::vector<std::string> bodies;
  for (const PublishedEvent& event : published_) {
    if (event.path == path) bodies.push_back(event.json);
  }
  return bodies;
}

std::vector<FakeRequest> FakeHost::RequestsTo(std::string_view path) const {
  std::vector<FakeRequest> found = requests_;
  std::erase_if(found, [path](const FakeRequest& request) { return request.Path() != path; });
  return found;
}

std::vector<std::string> FakeHost::ServiceCalls(std::string_view service,
                                                std::string_view method) const {
  const auto found = serviceCalls_.find({std::string(service), std::string(method)});
  return found != serviceCalls_.end() ? found->second : std::vector<std::string>();
}

std::vector<LoggedLine> FakeHost::Lines() const {
  const std::lock_guard hold(mutex_);
  return lines_;
}

size_t FakeHost::CountLines(std::string_view part) const {
  size_t count = 0;
  for (const LoggedLine& line : Lines()) count += line.text.find(part) != std::string::npos;
  return count;
}

std::vector<std::string> FakeHost::PostedTasks() const {
  const std::lock_guard hold(mutex_);
  return postedTasks_;
}

std::vector<std::string> FakeHost::Subscriptions() const {
  const std::lock_guard hold(mutex_);
  std::vector<std::string> names;
  for (const auto& [name, subscription] : subscriptions_) names.push_back(name);
  return names;
}

// ---- The service table --------------------------------------------------------------------------

void FakeHost::FillTable() {
  static constexpr auto kHostOf = [](Self self) { return static_cast<const Table*>(self)->host; };
  table_.host = this;
  table_.size = sizeof(KestHostServices);
  table_.request = [](Self self, const KestRequest* request, KestCompletion completion,
                      void* context) {
    return kHostOf(self)->OnHostRequest(*request, completion, context);
  };
  table_.subscribe = [](Self self, KestText name, KestDelivery delivery, void* context) {
    return kHostOf(self)->OnSubscribe(ToView(name), delivery, context);
  };
  table_.unsubscribe = [](Self self, KestText name) { kHostOf(self)->OnUnsubscribe(ToView(name)); };
  table_.publish = [](Self self, KestText path, int32_t type, KestBytes json) {
    constexpr const char* kTypes[] = {"Create", "Update", "Delete"};
    kHostOf(self)->published_.push_back(
        {std::string(ToView(path)), kTypes[type], std::string(ToView(json))});
    return true;
  };
  table_.postTask = [](Self self, KestText name, KestTask run, void* context) {
    return kHostOf(self)->OnPostTask(ToView(name), run, context);
  };
  table_.waitBegin = [](Self self, KestText label) {
    kHostOf(self)->waits_.emplace_back(ToView(label));
  };
  table_.waitEnd = [](Self self) { kHostOf(self)->waits_.emplace_back(); };
  table_.yield = [](Self self) { kHostOf(self)->pump_.Yield(); };
  table_.log = [](Self self, int32_t level, KestText line) {
    const std::lock_guard hold(kHostOf(self)->mutex_);
    kHostOf(self)->lines_.push_back({level, std::string(ToView(line))});
  };
  table_.telemetry = [](Self, KestText, KestBytes) {};
  table_.identify = [](Self self, KestText /*fullName*/, KestText userAgent) {
    kHostOf(self)->userAgent_ = ToView(userAgent);
  };
}

}  // namespace Kest::Testing
