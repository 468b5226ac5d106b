#include "client/service_proxy.h"

#include <utility>

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
      handlingTask_(pluginName + ".ServiceProxyResponses"),
      responses_(pluginName) {}

std::string ServiceProxy::Send(const ServiceCall& call, const CallArguments& arguments,
                               ResponseTable::Pending pending) {
  if (IsFinalising()) return std::string(kFinalizing);
  if (!arguments.Ok()) {
    return FormatNamed("Failed to convert type {type} to BindingProperty for serialization",
                       {{"type", arguments.FailedType()}});
  }
  const std::string callKey = call.Key();
  LogAlways("%s: Preparing service proxy request: %s", pluginName_.c_str(), callKey.c_str());
  // What the response needs is made first: once the request is sent, it will be waited for.
  auto entry = ResponseTable::MakePending(std::move(pending));
  const bool byUuid = call.requestKey.empty();
  const ResponseTable::Sending sending(responses_, byUuid ? std::string() : callKey);
  if (!sending.Ok()) {
    LogError("%s: Could not invoke service proxy as request is already in flight",
             pluginName_.c_str());
    return std::string(ResponseTable::kInFlight);
  }
  const Maybe<std::string> key =
      byUuid ? SendByUuid(call, arguments) : SendByMethod(call, callKey, arguments);
  if (IsFinalising()) return std::string(kFinalizing);
  if (!key) return key.GetFailure().text;
  LogAlways("%s: Started service proxy request: %s (%s)", pluginName_.c_str(), callKey.c_str(),
            key.GetValue().c_str());
  return responses_.AddPending(key.GetValue(), std::move(entry));
}

std::string ServiceProxy::InvokeInOrder(const ServiceCall& call, const CallArguments& arguments,
                                        std::unique_ptr<ResponseHandler> handler, bool post) {
  std::string failure;
  RunAtBoundary(
      [&] {
        const auto place =
            std::make_shared<ArrivalQueue::Place>(ArrivalQueue::MakePlace(std::move(handler)));
        const auto complete = [this, place](ArrivedResponse arrived) {
          arrived_.Arrive(std::move(*place), arrived.arrival, std::move(arrived.response));
        };
        const auto follow = [this, delivery = place->mapped(), post] {
          delivery->cause = host_.Cause();
          arrived_.Read(delivery);
          if (post) PostHandling();
        };
        failure = Send(call, arguments, {complete, follow});
      },
      [&failure](const char* text) noexcept { failure = CopyMessage(text); });
  // It may have held back responses that arrived while it was being sent.
  if (arrived_.First()) PostHandling();
  return failure;
}

bool ServiceProxy::PostHandling() noexcept {
  // Without memory for a task the next one that waits handles what has arrived.
  TaskPosting posting = TaskPosting::kRefused;
  RunAndLog("Service proxy response",
            [&] { posting = host_.PostTask(handlingTask_, [this] { HandleArrived(); }); });
  return posting != TaskPosting::kRefused;
}

ArrivalQueue::Place ServiceProxy::TakeNext() {
  if (begun_) return std::move(begun_);
  const auto first = arrived_.First();
  if (!first || responses_.HasUnclaimedBefore(*first)) return {};
  return arrived_.TakeFirst();
}

// What the handler does follows from the response, whichever task handles it.
bool ServiceProxy::HandlePart(const ArrivalQueue::Delivery& arrived) noexcept {
  const HostServices::CauseScope scope(host_, arrived.cause);
  return arrived.handler->Handle();
}

void ServiceProxy::HandleArrived() noexcept {
  while (turn_ == 0) {
    ArrivalQueue::Place place = TakeNext();
    if (!place) return;
    const uint64_t turn = turn_ = place.key();
    const bool isLastPart = HandlePart(*place.mapped());
    if (!isLastPart) begun_ = std::move(place);
    if (turn_ == turn) EndTurn();
    client_.AskAgainForLostEvents();
    if (!isLastPart && PostHandling()) return;
  }
}

Maybe<std::string> ServiceProxy::SendByUuid(const ServiceCall& call,
                                            const CallArguments& arguments) {
  return client_.Request<std::string>(HttpMethod::kPost, kUuidRequestsPath,
                                      arguments.MakeBody(call));
}

Maybe<std::string> ServiceProxy::SendByMethod(const ServiceCall& call, const std::string& key,
                                              const CallArguments& arguments) {
  const Maybe<Nothing> sent =
      client_.Request<Nothing>(HttpMethod::kPost, kMethodRequestsPath, arguments.MakeBody(call));
  if (!sent) return sent.GetFailure();
  return key;
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

template <class Event, class Handle, class HandleUnreadable>
void ServiceProxy::Follow(std::string_view name, Handle handle, HandleUnreadable handleUnreadable) {
  auto read = [this, event = std::string(name), handle, handleUnreadable](std::string_view text) {
    const auto fail = [&](const char* error) noexcept {
      LogError("%s: Could not read %s: %s", pluginName_.c_str(), event.c_str(), error);
      handleUnreadable(text, error);
    };
    RunAtBoundary(
        [&] {
          Event value;
          ConversionContext context;
          ReadJsonValue(context, "<value>", text, &value);
          if (!context.Ok()) return fail(context.ErrorMessage().c_str());
          handle(std::move(value));
        },
        fail);
  };
  if (!host_.Subscribe(name, std::move(read))) {
    LogError("%s: Could not subscribe to %.*s", pluginName_.c_str(), static_cast<int>(name.size()),
             name.data());
  }
}

void ServiceProxy::FollowResponses(
    std::string_view name, void (ResponseTable::*handle)(PluginServiceProxyResponse response),
    bool areAwaited) {
  Follow<PluginServiceProxyResponse>(
      name,
      [this, handle](PluginServiceProxyResponse response) {
        (responses_.*handle)(std::move(response));
      },
      [this, areAwaited](std::string_view text, std::string_view error) {
        if (areAwaited) responses_.AddUnreadable(text, error);
      });
}

void ServiceProxy::Start() {
  FollowResponses(kServiceProxyUuidEvent, &ResponseTable::AddUuidResponse, true);
  FollowResponses(kServiceProxyMethodEvent, &ResponseTable::AddMethodResponse, true);
  FollowResponses(kServiceProxyAsyncEvent, &ResponseTable::DeliverAsync, false);
}

void ServiceProxy::Finalise() {
  responses_.Finalise();
  arrived_.Clear();
  begun_ = {};
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
  Follow<PluginSvdsEvent>(
      name, [this](PluginSvdsEvent event) { OnSvdsEvent(std::move(event)); },
      [](std::string_view, std::string_view) {});
}

void ServiceProxy::OnSvdsEvent(PluginSvdsEvent event) {
  const std::string task = pluginName_ + ".PlatformMessage " + std::to_string(nextMessage_++);
  host_.PostTask(task, [this, event = std::move(event)] {
    const auto found = svdsHandlers_.find(event.subtopic);
    if (found == svdsHandlers_.end()) return;
    const auto handler = found->second;  // it may wait, and be replaced meanwhile
    handler(event);
  });
}

}  // namespace Kest::Client
