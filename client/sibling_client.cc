#include "client/sibling_client.h"

#include "api/argument_value.h"
#include "log/logger.h"
#include "plugin/boundary.h"
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
  host_.Request(sent, [promise = std::move(promise)](Maybe<Response> response) {
    promise->Set(std::move(response));
  });
  Maybe<Response> result = module_.Await(std::move(future));
  if (!result) {
    if (result.GetFailure().text == kFinalizing) return result;
    if (result.GetFailure().text == kOutOfMemory) throw std::bad_alloc();
    return request.Fail(RequestStep::kResponse, result.GetFailure().text);
  }
  const Response& response = result.GetValue();
  if (response.status < kStatusBadRequest) return result;
  const std::string_view error =
      !response.message.empty() ? std::string_view(response.message) : StatusText(response.status);
  return request.Fail(RequestStep::kResponse, error, response.status);
}

std::string_view SiblingClient::WhyUnreadable(const Response& response) {
  if (response.body.empty()) return {};
  if (response.body.size() > kMaxJsonBytes) return "Body is too large";
  const std::string_view type = response.contentType;
  const bool isJson = type.empty() || HasContentType(type, kContentTypeJson) ||
                      HasContentType(type, kContentTypeJsonApi);
  return isJson ? std::string_view() : kUnsupportedContentType;
}

void SiblingClient::Publish(const ResourceChange& change) noexcept {
  if (change.isConverted) host_.Publish(change.path, change.type, change.json);
}

void SiblingClient::LogUnpublished(std::string_view typeName,
                                   std::string_view path) const noexcept {
  LogError("%s: Couldn't convert resource %.*s for event uri \"%.*s\"", pluginName_.c_str(),
           static_cast<int>(typeName.size()), typeName.data(), static_cast<int>(path.size()),
           path.data());
}

}  // namespace Kest::Client
