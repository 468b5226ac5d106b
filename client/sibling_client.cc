#include "client/sibling_client.h"

#include "log/logger.h"
#include "plugin/once_promise.h"

namespace Kest::Client {

SiblingClient::SiblingClient(HostServices& host, AppModule& module, const std::string& pluginName)
    : host_(host), module_(module), pluginName_(pluginName), subscriptions_(host, pluginName) {}

Maybe<Response> SiblingClient::Send(const OutgoingRequest& request) {
  if (!request.ArgumentsConverted()) return request.ArgumentFailure();
  HostRequest sent;
  sent.method = request.Method();
  sent.url = request.Target();
  sent.contentType = request.HasBody() ? kContentTypeJson : std::string_view();
  sent.body = request.Body();
  auto promise = std::make_shared<OncePromise<Response>>();
  auto future = promise->GetFuture();
  host_.Request(sent, [promise = std::move(promise)](Maybe<Response> answer) {
    promise->Set(std::move(answer));
  });
  Maybe<Response> answer = module_.Await(std::move(future));
  if (!answer) {
    if (answer.GetFailure().text == kFinalizing) return answer;
    return request.Fail(RequestStep::kAnswer, answer.GetFailure().text);
  }
  const Response& response = answer.GetValue();
  if (response.status < kStatusBadRequest) return answer;
  const std::string_view error =
      !response.message.empty() ? std::string_view(response.message) : StatusText(response.status);
  return request.Fail(RequestStep::kAnswer, error, response.status);
}

std::string_view SiblingClient::WhyUnreadable(const Response& answer) {
  if (answer.body.empty()) return {};
  if (answer.body.size() > kMaxJsonBytes) return "Body is too large";
  const std::string_view type = answer.contentType;
  const bool isJson = type.empty() || HasContentType(type, kContentTypeJson) ||
                      HasContentType(type, kContentTypeJsonApi);
  return isJson ? std::string_view() : "Unsupported body content type";
}

void SiblingClient::PublishDelete(std::string_view path) {
  host_.Publish(path, ResourceEventType::kDelete, {});
}

void SiblingClient::LogUnpublished(std::string_view typeName, std::string_view path) {
  LogError("%s: Couldn't convert resource %s for event uri \"%s\"", pluginName_.c_str(),
           std::string(typeName).c_str(), std::string(path).c_str());
}

}  // namespace Kest::Client
