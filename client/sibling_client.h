// SiblingClient is the typed side of the traffic with other plugins and the host: requests,
// resource subscriptions and the publication of this plugin's own resources.
//
// A request's arguments:
//   Query("inventoryTypes", list)  goes into the url's query under that name: a string as it is,
//                                  anything else as JSON; percent-encoded
//   a plain value                  is the JSON body; a request takes at most one
// Failure messages of a request ({error} is the reason):
//   400 "Request not sent: Error converting parameters for {method} {url}: {error}"
//   the response's status "Error response for {method} {url}: {error}"
//   "Error reading streamed response for {method} {url}: {error}"   body too large or not JSON
//   "Error converting response for {method} {url}: {error}"
//   "Finalizing" when the plugin stops before the response
// A response that there is no memory for throws std::bad_alloc, so that what asked for it is
// repeated where it can be.
//
// Threads: module tasks only. Request waits, so other tasks run during the call; Subscribe and
//          Publish do not. Handlers run on module tasks, in the order of the events of one url.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "api/http_names.h"
#include "api/response.h"
#include "base/maybe_type.h"
#include "binding/convert/convert.h"
#include "binding/json/json_adapter.h"
#include "binding/types/static_type.h"
#include "client/outgoing_request.h"
#include "client/resource_subscriptions.h"
#include "plugin/app_module.h"
#include "plugin/host_services.h"
#include "plugin/plugin_events.h"

namespace Kest::Client {

// A change of one of this plugin's resources, ready to be published.
struct ResourceChange {
  std::string path;
  ResourceEventType type = ResourceEventType::kDelete;
  std::string json;         // empty for kDelete
  bool isConverted = true;  // otherwise it is not published
};

class SiblingClient {
 public:
  // The three outlive the client. `pluginName` is the prefix of log lines.
  SiblingClient(HostServices& host, AppModule& module, const std::string& pluginName);

  // Sends the request and waits for the typed response. R may be Nothing (the body is not read) and
  // BindingProperty (the body as it is).
  template <class R, class... A>
  Maybe<R> Request(HttpMethod method, std::string_view url, const A&... arguments) {
    static_assert((0 + ... + (IsQuery<A> ? 0 : 1)) <= 1,
                  "only one argument can be the body; wrap the others in Query(name, value)");
    OutgoingRequest request(method, url);
    (request.Add(arguments), ...);
    Maybe<Response> response = Send(request);
    if (!response) return response.GetFailure();
    return ReadResponse<R>(request, response.GetValue());
  }

  // The untyped halves of Request, for callers that read the body themselves.
  Maybe<Response> Send(const OutgoingRequest& request);
  template <class R>
  static Maybe<R> ReadResponse(const OutgoingRequest& request, const Response& response) {
    R result{};
    if constexpr (!std::is_same_v<R, Nothing>) {
      const std::string_view unreadable = WhyUnreadable(response);
      if (!unreadable.empty()) return request.Fail(RequestStep::kBody, unreadable);
      ConversionContext context;
      // Without a body there is no value, which some types accept.
      const BindingProperty tree =
          response.body.empty() ? BindingProperty() : ReadJson(context, response.body);
      Assign(context, "<result>", tree, &result);
      if (context.RanOutOfMemory()) throw std::bad_alloc();
      if (!context.Ok()) return request.Fail(RequestStep::kConversion, context.ErrorMessage());
    }
    return result;
  }

  // Calls `handler(value, type)` for each event of the resource, `value` null on kDelete and lent
  // for the call otherwise. The first subscription of a url gets the resource's present value as
  // one kCreate, when it exists. An event that does not convert is dropped. In a url "*" matches
  // any characters. A url may have several handlers.
  template <class T, class Function>
  void Subscribe(std::string_view url, Function handler) {
    subscriptions_.Add(
        url,
        [handler = std::move(handler)](const BindingProperty* data, ResourceEventType type) {
          if (data == nullptr) {
            handler(nullptr, type);
            return std::string();
          }
          T value{};
          ConversionContext context;
          Assign(context, "<value>", *data, &value);
          if (context.RanOutOfMemory()) throw std::bad_alloc();
          if (!context.Ok()) return std::string(context.ErrorMessage());
          handler(&value, type);
          return std::string();
        },
        StaticType::Name<T>());
  }
  // Ends the last subscription of the url. Without one it logs a warning and does nothing else.
  void Unsubscribe(std::string_view url) { subscriptions_.Remove(url); }
  // Why the newest value of a followed url was dropped; empty when it was not.
  std::string_view ConversionFailureOf(std::string_view url) const {
    return subscriptions_.ConversionFailureOf(url);
  }
  // What was read otherwise shows that memory suffices: events that were given up come again.
  void AskAgainForLostEvents() noexcept { subscriptions_.AskAgainForLost(); }

  // Publishes a change of one of this plugin's resources. A value that does not convert is logged
  // and not published.
  template <class T>
  void Publish(std::string_view path, ResourceEventType type, const T& value) {
    Publish(MakeChange(path, type, value));
  }

  // The two halves of it, for changes that belong together: a caller that makes them all before the
  // first leaves publishes either all of them or, when memory runs out, none.
  template <class T>
  ResourceChange MakeChange(std::string_view path, ResourceEventType type, const T& value) const {
    ResourceChange change{std::string(path), type, {}, true};
    ConversionContext context;
    WriteJsonValue(context, value, &change.json);
    if (!context.Ok()) {
      change.isConverted = false;
      LogUnpublished(StaticType::Name<T>(), path);
    }
    return change;
  }
  void Publish(const ResourceChange& change) noexcept;

  // The same for a value of type T that is JSON already, which is lent for the call; without JSON
  // it did not convert. Needs no memory.
  template <class T>
  void PublishJson(std::string_view path, ResourceEventType type, std::string_view json) noexcept {
    if (json.empty()) return LogUnpublished(StaticType::Name<T>(), path);
    host_.Publish(path, type, json);
  }
  void PublishDelete(std::string_view path) noexcept {
    host_.Publish(path, ResourceEventType::kDelete, {});
  }

 private:
  // Why the body cannot be read as JSON at all; empty when it can.
  static std::string_view WhyUnreadable(const Response& response);
  void LogUnpublished(std::string_view typeName, std::string_view path) const noexcept;

  HostServices& host_;
  AppModule& module_;
  const std::string& pluginName_;
  ResourceSubscriptions subscriptions_;
};

}  // namespace Kest::Client
