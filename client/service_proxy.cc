#include "client/service_proxy.h"

#include "log/logger.h"
#include "log/positional_format.h"
#include "log/trace.h"

namespace Kest::Client {

ServiceProxy::ServiceProxy(HostServices& host, AppModule& module, SiblingClient& client,
                           const std::string& pluginName)
    : host_(host),
      module_(module),
      client_(client),
      pluginName_(pluginName),
      responses_(pluginName) {}

std::string ServiceProxy::Invoke(const ServiceCall& call, const CallArguments& arguments,
                                 Completion completion) {
  if (IsFinalising()) return std::string(kFinalizing);
  if (!arguments.Ok()) {
    return FormatNamed("Failed to convert type {type} to BindingProperty for serialization",
                       {{"type", arguments.FailedType()}});
  }
  const std::string callKey = call.Key();
  LogAlways("%s: Preparing service proxy request: %s", pluginName_.c_str(), callKey.c_str());
  const Maybe<std::string> key =
      call.requestKey.empty() ? SendByUuid(call, arguments) : SendByMethod(call, arguments);
  if (IsFinalising()) return std::string(kFinalizing);
  if (!key) return key.GetFailure().text;
  LogAlways("%s: Started service proxy request: %s (%s)", pluginName_.c_str(), callKey.c_str(),
            key.GetValue().c_str());
  return responses_.AddPending(key.GetValue(), std::move(completion));
}

Maybe<std::string> ServiceProxy::SendByUuid(const ServiceCall& call,
                                            const CallArguments& arguments) {
  return client_.Request<std::string>(HttpMethod::kPost, kUuidRequestsPath,
                                      arguments.MakeBody(call));
}

Maybe<std::string> ServiceProxy::SendByMethod(const ServiceCall& call,
                                              const CallArguments& arguments) {
  const std::string key = call.Key();
  if (!responses_.Reserve(key)) {
    LogError("%s: Could not invoke service proxy as request is already in flight",
             pluginName_.c_str());
    return Failure{std::string(ResponseTable::kInFlight)};
  }
  const Maybe<Nothing> sent =
      client_.Request<Nothing>(HttpMethod::kPost, kMethodRequestsPath, arguments.MakeBody(call));
  if (sent) return key;
  responses_.Unreserve(key);
  return sent.GetFailure();
}

Maybe<Response> ServiceProxy::SendToSession(const ServiceCall& call, const CallArguments& arguments,
                                            OutgoingRequest* request) {
  if (IsFinalising()) return Failure{std::string(kFinalizing)};
  if (!arguments.Ok()) {
    return Failure{FormatNamed("Couldn't convert SVDS call parameters: {error}",
                               {{"error", arguments.ErrorMessage()}})};
  }
  request->Add(arguments.MakeBody(call));
  return client_.Send(*request);
}

template <class Event>
void ServiceProxy::Follow(const std::string& name, void (ServiceProxy::*handle)(Event event)) {
  const bool followed = host_.Subscribe(name, [this, name, handle](std::string_view body) {
    Event event;
    ConversionContext context;
    ReadJsonValue(context, "<value>", body, &event);
    if (context.Ok()) {
      (this->*handle)(std::move(event));
    } else {
      LogError("%s: Could not read %s: %s", pluginName_.c_str(), name.c_str(),
               context.ErrorMessage().c_str());
    }
  });
  if (!followed) LogError("%s: Could not subscribe to %s", pluginName_.c_str(), name.c_str());
}

void ServiceProxy::Start() {
  Follow(std::string(kServiceProxyUuidEvent), &ServiceProxy::OnUuidResponse);
  Follow(std::string(kServiceProxyMethodEvent), &ServiceProxy::OnMethodResponse);
  Follow(std::string(kServiceProxyAsyncEvent), &ServiceProxy::OnAsyncResponse);
}

void ServiceProxy::Finalise() {
  responses_.Finalise();
}

void ServiceProxy::OnUuidResponse(PluginServiceProxyResponse response) {
  const std::string key = response.uuid;
  responses_.AddResponse(key, std::move(response));
}

void ServiceProxy::OnMethodResponse(PluginServiceProxyResponse response) {
  const std::string key = ServiceCallKey(response.serviceName, response.methodName);
  responses_.AddResponse(key, std::move(response));
}

void ServiceProxy::OnAsyncResponse(PluginServiceProxyResponse response) {
  const std::string key = ServiceCallKey(response.serviceName, response.methodName);
  responses_.DeliverAsync(key, std::move(response));
}

void ServiceProxy::SubscribeAsync(std::string_view service, std::string_view method,
                                  Completion handler) {
  responses_.SetAsyncHandler(ServiceCallKey(service, method), std::move(handler));
}

void ServiceProxy::SubscribeSvds(std::string_view subtopic,
                                 std::function<void(const PluginSvdsEvent&)> handler) {
  const std::string name = std::string(kSvdsEvent).append("_").append(subtopic);
  svdsHandlers_.insert_or_assign(std::string(subtopic), std::move(handler));
  Trace("%s: Subscribing to SVDS event: %s", pluginName_.c_str(), std::string(subtopic).c_str());
  Follow(name, &ServiceProxy::OnSvdsEvent);
}

void ServiceProxy::OnSvdsEvent(PluginSvdsEvent event) {
  PostWork([this, event = std::move(event)] {
    const auto found = svdsHandlers_.find(event.subtopic);
    if (found == svdsHandlers_.end()) return;
    const auto handler = found->second;  // it may wait, and be replaced meanwhile
    handler(event);
  });
}

void ServiceProxy::PostWork(std::function<void()> run) {
  const std::string name = "LootPlugin.ServiceProxyEvent " + std::to_string(nextTask_++);
  host_.PostTask(name, std::move(run));
}

void ServiceProxy::LogUnreadable(std::string_view typeName, std::string_view text) {
  LogError("%s: Couldn't convert SVDS DTO %s to C++ from %s", pluginName_.c_str(),
           std::string(typeName).c_str(), std::string(text).c_str());
}

}  // namespace Kest::Client
