#include "tests/support/fake_host.h"

#include <cstdio>
#include <cstdlib>

#include "base/platform.h"
#include "binding/json_adapter.h"
#include "plugin/text_view.h"

namespace Kest::Testing {

namespace {

constexpr std::string_view kResourceEvent = "OnJsonApiEvent";
constexpr std::string_view kSessionPath = "/tav-login/v1/session";
constexpr std::string_view kInvokePath = "/tav-login/v1/session/invoke";
constexpr std::string_view kUuidPath = "/tav-login/v1/service-proxy-uuid-requests";
constexpr std::string_view kMethodPath = "/tav-login/v1/service-proxy-method-requests";

std::string Joined(std::string_view left, std::string_view right) {
  return std::string(left).append(right);
}

BindingProperty Parsed(std::string_view json) {
  ConversionContext context;
  BindingProperty tree = ReadJson(context, json);
  if (!context.Ok()) {
    std::fprintf(stderr, "The fake host got bad JSON: %s\n", std::string(json).c_str());
    std::abort();
  }
  return tree;
}

std::string Written(const BindingProperty& tree) {
  ConversionContext context;
  std::string json;
  WriteJson(context, tree, &json);
  return json;
}

std::string TextMember(const BindingProperty& tree, std::string_view name) {
  const BindingProperty* const member = tree.FindMember(name);
  return member != nullptr ? std::string(member->AsString()) : std::string();
}

std::string ResourceEventJson(std::string_view path, std::string_view type, std::string_view json) {
  BindingProperty event = BindingProperty::Structure();
  event.TakeMember("uri").SetString(path);
  event.TakeMember("eventType").SetString(type);
  if (!json.empty()) event.TakeMember("data") = Parsed(json);
  return Written(event);
}

std::string ServiceEventJson(std::string_view uuid, std::string_view service,
                             std::string_view method, const ServiceReply& reply) {
  BindingProperty event = BindingProperty::Structure();
  event.TakeMember("uuid").SetString(uuid);
  event.TakeMember("serviceName").SetString(service);
  event.TakeMember("methodName").SetString(method);
  event.TakeMember("payload").SetString(reply.payload);
  event.TakeMember("status").SetString(reply.error.empty() ? "OK" : "ERROR");
  event.TakeMember("error").SetString(reply.error);
  return Written(event);
}

bool ComesOnAnyThread(std::string_view eventName) {
  return eventName.starts_with("OnServiceProxy") || eventName.starts_with("OnSvdsEvent");
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

void FakeHost::Load(KestLoadFunction load) {
  Load([load](KestHandshakeBlock* block) { load(block); });
}

void FakeHost::Load(const std::function<void(KestHandshakeBlock*)>& handshake) {
  block_ = {};
  block_.major = 18;
  handshake(&block_);
}

bool FakeHost::Start() {
  bool started = false;
  RunTask([this, &started] { started = block_.callbacks->start(block_.context, Services()); });
  return started;
}

void FakeHost::Stop() {
  RunTask([this] {
    block_.callbacks->stop(block_.context);
    stopped_ = true;
  });
  if (stopped_) return;
  std::fprintf(stderr, "The plugin's stop does not return\n");
  std::abort();
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
  pump_.NoteActivity();
  FakeRequest copy{std::string(ToView(request.method)), std::string(ToView(request.url)),
                   std::string(ToView(request.body))};
  requests_.push_back(copy);
  if (refuse_) return false;
  FakeAnswer answer = AnswerTo(copy);
  const bool held = answer.held;
  Queue(copy.Path(), held, [this, completion, context, answer = std::move(answer)] {
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

FakeAnswer FakeHost::AnswerTo(const FakeRequest& request) {
  const std::string path = request.Path();
  const auto handler = handlers_.find({request.method, path});
  if (handler != handlers_.end()) return handler->second(request);
  if (path == kInvokePath || path == kUuidPath || path == kMethodPath) {
    return AnswerServiceCall(request);
  }
  FakeAnswer answer;
  const auto resource = resources_.find(path);
  if (request.method == "GET" && resource != resources_.end()) {
    answer.body = resource->second;
  } else {
    answer.status = 404;
    answer.message = "Not found";
  }
  return answer;
}

FakeAnswer FakeHost::AnswerServiceCall(const FakeRequest& request) {
  const BindingProperty call = Parsed(request.body);
  const std::string service = TextMember(call, "serviceName");
  const std::string method = TextMember(call, "methodName");
  serviceCalls_[{service, method}].push_back(request.body);
  const auto handler = services_.find({service, method});
  const bool known = handler != services_.end();
  const std::string path = request.Path();
  FakeAnswer answer;
  if (path == kInvokePath) {
    const ServiceReply reply =
        known ? handler->second(request.body) : ServiceReply{{}, "Unknown method", false};
    answer.body = reply.payload;
    answer.message = reply.error;
    answer.status = reply.error.empty() ? 200 : 500;
    answer.held = reply.held;
    return answer;
  }
  const bool byUuid = path == kUuidPath;
  const std::string uuid = byUuid ? "uuid-" + std::to_string(++nextUuid_) : std::string();
  if (byUuid) answer.body = "\"" + uuid + "\"";
  if (!byUuid) answer.status = 204;
  if (known) {
    const ServiceReply reply = handler->second(request.body);
    Queue(method, reply.held, [this, byUuid, uuid, service, method, reply] {
      DeliverEvent(byUuid ? "OnServiceProxyUuidEvent" : "OnServiceProxyMethodEvent",
                   ServiceEventJson(uuid, service, method, reply));
    });
  }
  return answer;
}

void FakeHost::Queue(std::string_view key, bool isHeld, std::function<void()> work) {
  if (isHeld) {
    held_.push_back({std::string(key), std::move(work)});
  } else {
    pump_.Post(std::move(work));
  }
}

void FakeHost::ReleaseHeld(std::string_view pathOrMethod) {
  std::vector<Held> stillHeld;
  for (Held& held : held_) {
    if (pathOrMethod.empty() || held.key == pathOrMethod) {
      pump_.Post(std::move(held.release));
    } else {
      stillHeld.push_back(std::move(held));
    }
  }
  held_ = std::move(stillHeld);
  RunUntilIdle();
}

// ---- Events -------------------------------------------------------------------------------------

void FakeHost::SetResource(std::string_view path, std::string_view json) {
  const bool existed = resources_.insert_or_assign(std::string(path), std::string(json)).second;
  TellFollowers(path, existed ? "Create" : "Update", json);
}

void FakeHost::RemoveResource(std::string_view path) {
  resources_.erase(std::string(path));
  TellFollowers(path, "Delete", {});
}

void FakeHost::Login(uint64_t summonerId, std::string_view state, uint64_t accountId) {
  SetResource(kSessionPath, "{\"state\":\"" + std::string(state) +
                                "\",\"summonerId\":" + std::to_string(summonerId) +
                                ",\"accountId\":" + std::to_string(accountId) + "}");
}

void FakeHost::SendSvds(std::string_view subtopic, std::string_view bodyJson) {
  BindingProperty event = BindingProperty::Structure();
  event.TakeMember("clientId").SetString("client");
  event.TakeMember("subtopic").SetString(subtopic);
  event.TakeMember("typeName").SetString(subtopic);
  event.TakeMember("body") = Parsed(bodyJson);
  DeliverEvent(Joined("OnSvdsEvent_", subtopic), Written(event));
  RunUntilIdle();
}

void FakeHost::TellFollowers(std::string_view path, std::string_view type, std::string_view json) {
  const std::string event = ResourceEventJson(path, type, json);
  DeliverEvent(Joined("OnJsonApiEvent_", path), event);
  DeliverEvent(kResourceEvent, event);
  RunUntilIdle();
}

void FakeHost::DeliverEvent(std::string_view name, std::string_view json) {
  uint64_t serial = 0;
  {
    const std::lock_guard hold(mutex_);
    const auto found = subscriptions_.find(name);
    if (found == subscriptions_.end()) return;
    serial = found->second.serial;
  }
  auto deliver = [this, serial, key = std::string(name), body = std::string(json)] {
    Subscription subscription{};
    {
      const std::lock_guard hold(mutex_);
      const auto found = subscriptions_.find(key);
      if (found == subscriptions_.end() || found->second.serial != serial) return;
      subscription = found->second;
    }
    subscription.delivery(subscription.context, ToText(key), ToText("application/json"),
                          ToBytes(body));
  };
  if (serviceEventsOnThread_ && ComesOnAnyThread(name)) {
    pump_.PostOnThread(std::move(deliver));
  } else {
    pump_.Post(std::move(deliver));
  }
}

bool FakeHost::OnSubscribe(std::string_view name, KestDelivery delivery, void* context) {
  pump_.NoteActivity();
  subscriptionLog_.push_back(Joined("+", name));
  if (refuse_) return false;
  {
    const std::lock_guard hold(mutex_);
    subscriptions_.insert_or_assign(std::string(name),
                                    Subscription{delivery, context, ++nextSubscription_});
  }
  if (!name.starts_with("OnJsonApiEvent_")) return true;
  const std::string_view path = name.substr(kResourceEvent.size() + 1);
  const auto resource = resources_.find(path);
  if (resource != resources_.end()) {
    DeliverEvent(name, ResourceEventJson(path, "Create", resource->second));
  }
  return true;
}

void FakeHost::OnUnsubscribe(std::string_view name) {
  pump_.NoteActivity();
  subscriptionLog_.push_back(Joined("-", name));
  const std::lock_guard hold(mutex_);
  const auto found = subscriptions_.find(name);
  if (found != subscriptions_.end()) subscriptions_.erase(found);
}

// ---- Tasks --------------------------------------------------------------------------------------

int32_t FakeHost::OnPostTask(std::string_view name, KestTask run, void* context) {
  pump_.NoteActivity();
  std::string key(name);
  {
    const std::lock_guard hold(mutex_);
    if (refuse_) return KEST_TASK_REFUSED;
    postedTasks_.push_back(key);
    if (mergeTasks_ && !waitingTasks_.insert(key).second) return KEST_TASK_MERGED;
  }
  pump_.Post([this, key = std::move(key), run, context] {
    {
      const std::lock_guard hold(mutex_);
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

// ---- Requests to the plugin ---------------------------------------------------------------------

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
  auto reply = std::make_shared<Reply>();
  RunTask([this, reply, name = std::string(function)] {
    TakeReply(block_.api->invoke(block_.context, ToText(name), nullptr, 0), reply.get());
  });
  return *reply;
}

void FakeHost::TakeReply(const KestResponse* response, Reply* reply) {
  if (response == nullptr) return;
  reply->status = response->status;
  reply->message = ToView(response->message);
  reply->contentType = ToView(response->contentType);
  reply->body = ToView(response->body);
  reply->done = true;
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
  std::vector<FakeRequest> found;
  for (const FakeRequest& request : requests_) {
    if (request.Path() == path) found.push_back(request);
  }
  return found;
}

std::vector<std::string> FakeHost::ServiceCalls(std::string_view service,
                                                std::string_view method) const {
  const auto found = serviceCalls_.find({std::string(service), std::string(method)});
  return found != serviceCalls_.end() ? found->second : std::vector<std::string>();
}

void FakeHost::ForgetRequests() {
  requests_.clear();
  serviceCalls_.clear();
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

KestStatistics FakeHost::Statistics() const {
  KestStatistics statistics;
  block_.callbacks->statistics(block_.context, &statistics);
  return statistics;
}

// ---- The service table --------------------------------------------------------------------------

FakeHost* FakeHost::From(const KestHostServices* services) {
  return reinterpret_cast<const Table*>(services)->host;
}

void FakeHost::OnPublish(std::string_view path, int32_t type, std::string_view json) {
  constexpr const char* kTypes[] = {"Create", "Update", "Delete"};
  pump_.NoteActivity();
  published_.push_back({std::string(path), kTypes[type], std::string(json)});
}

void FakeHost::OnLog(int32_t level, std::string_view line) {
  const std::lock_guard hold(mutex_);
  lines_.push_back({level, std::string(line)});
}

void FakeHost::FillTable() {
  table_.host = this;
  KestHostServices& table = table_.base;
  table.size = sizeof table;
  table.request = [](const KestHostServices* self, const KestRequest* request,
                     KestCompletion completion, void* context) {
    return From(self)->OnHostRequest(*request, completion, context);
  };
  table.subscribe = [](const KestHostServices* self, KestText name, KestDelivery delivery,
                       void* context) {
    return From(self)->OnSubscribe(ToView(name), delivery, context);
  };
  table.unsubscribe = [](const KestHostServices* self, KestText name) {
    From(self)->OnUnsubscribe(ToView(name));
  };
  table.publish = [](const KestHostServices* self, KestText path, int32_t type, KestBytes json) {
    From(self)->OnPublish(ToView(path), type, ToView(json));
    return true;
  };
  table.postTask = [](const KestHostServices* self, KestText name, KestTask run, void* context) {
    return From(self)->OnPostTask(ToView(name), run, context);
  };
  table.waitBegin = [](const KestHostServices* self, KestText label) {
    From(self)->waits_.emplace_back(ToView(label));
    From(self)->pump_.NoteActivity();
  };
  table.waitEnd = [](const KestHostServices* self) {
    From(self)->waits_.emplace_back();
    From(self)->pump_.NoteActivity();
  };
  table.yield = [](const KestHostServices* self) { From(self)->pump_.Yield(); };
  table.log = [](const KestHostServices* self, int32_t level, KestText line) {
    From(self)->OnLog(level, ToView(line));
  };
  table.telemetry = [](const KestHostServices* self, KestText name, KestBytes json) {
    From(self)->telemetry_.push_back(Joined(ToView(name), ToView(json)));
  };
  table.identify = [](const KestHostServices* self, KestText /*fullName*/, KestText userAgent) {
    From(self)->userAgent_ = ToView(userAgent);
  };
}

}  // namespace Kest::Testing
