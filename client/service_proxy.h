// ServiceProxy calls methods of the platform's services through the host and matches each later
// response event to the request that waits for it.
//
// Two kinds of asynchronous request: with an empty request key each call gets a uuid from the host
// and any number may run side by side; with a request key the call is keyed "service.method" and
// only one may run at a time. No time-out ends a request; stop does.
//
// A result is read on the thread its response comes on, and used on module tasks, one after the
// other in the order in which the responses arrived: a task that waits also handles those of other
// tasks that came before its own. A long result is used in parts, and other tasks run between them.
// While a request is being sent, its response may be among the unknown ones; later responses are
// handled after it. A handler that publishes ends its turn first: from inside the publication the
// host may ask for something that waits for a later response.
//
// Failure messages: "Finalizing" (also for requests that were pending when the plugin stopped),
//   "Failed to convert type {type} to BindingProperty for serialization", "Request already in
//   flight", "Couldn't convert SVDS call parameters: {error}", a request's own
//   message (see SiblingClient), the response's `error`, the decoder's message for an
//   unreadable `payload`, "Response lost" (see ResponseTable), "Out of memory".
//
// Threads: Invoke... and Subscribe... on module tasks; each Invoke waits, InvokeAsync only until
//          the host has accepted the request. Response events come on any thread. Completions and
//          asynchronous handlers run under the lock: they may set a promise or post a task, and
//          must not call the proxy.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "base/maybe_type.h"
#include "binding/convert/convert.h"
#include "binding/types/static_type.h"
#include "client/arrival_queue.h"
#include "client/response_table.h"
#include "client/result_handler.h"
#include "client/service_call.h"
#include "client/sibling_client.h"
#include "plugin/app_module.h"
#include "plugin/boundary.h"
#include "plugin/host_services.h"
#include "plugin/once_promise.h"
#include "plugin/plugin_events.h"

namespace Kest::Client {

class ServiceProxy {
 public:
  using Completion = ResponseTable::Completion;

  // All outlive the proxy. `pluginName` is the prefix of log lines.
  ServiceProxy(HostServices& host, AppModule& module, SiblingClient& client,
               const std::string& pluginName);

  // Subscribes to the three response events.
  void Start();
  // Ends every pending request with "Finalizing" and refuses new ones. Does not wait.
  void Finalise();

  // Calls the method with a uuid-based request and waits. The last part of `use` has run, on some
  // module task, when this returns a success.
  template <class R, class... A>
  Maybe<Nothing> InvokeAndWait(std::string_view service, std::string_view method,
                               Preparation<R> use, const A&... arguments) {
    auto promise = std::make_shared<OncePromise<Nothing>>();
    auto future = promise->GetFuture();
    auto handler = std::make_unique<ResultHandler<R>>(
        pluginName_, std::move(use), [promise = std::move(promise)](Maybe<Nothing> outcome) {
          promise->Set(std::move(outcome));
        });
    const std::string failure = InvokeInOrder({service, method, {}, false},
                                              CallArguments(arguments...), std::move(handler));
    if (!failure.empty()) return Failure{failure};
    return module_.Await(std::move(future), StaticType::Name<Maybe<R>>(),
                         [this] { HandleArrived(); });
  }

  // Starts the call and returns an empty string, or why it could not be started. Then neither
  // function is called; otherwise `use` runs later, or `fail` on a module task, unless the plugin
  // stops.
  template <class R, class... A>
  std::string InvokeAsync(std::string_view service, std::string_view method,
                          std::string_view requestKey, bool flag, Preparation<R> use,
                          std::function<void(const Failure& failure)> fail, const A&... arguments) {
    std::string failure;
    RunAtBoundary(
        [&] {
          failure = InvokeInOrder({service, method, requestKey, flag}, CallArguments(arguments...),
                                  std::make_unique<ResultHandler<R>>(
                                      pluginName_, std::move(use),
                                      [fail = std::move(fail)](const Maybe<Nothing>& outcome) {
                                        if (!outcome) fail(outcome.GetFailure());
                                      }),
                                  /*post=*/true);
        },
        [&failure](const char* text) noexcept { failure = CopyMessage(text); });
    return failure;
  }

  // Calls the method through the session's synchronous endpoint and waits for its result. A failure
  // has the status 500, as that of any call: what the endpoint responded with concerns this
  // plugin's request, not the one that led to it.
  template <class R, class... A>
  Maybe<R> InvokeSession(std::string_view service, std::string_view method, const A&... arguments) {
    OutgoingRequest request(HttpMethod::kPost, kSessionInvokePath);
    Maybe<Response> response =
        SendToSession({service, method, {}, false}, CallArguments(arguments...), &request);
    if (!response) return Failure{response.GetFailure().text};
    Maybe<R> result = SiblingClient::ReadResponse<R>(request, response.GetValue());
    if (result) return result;
    LogUnreadableResult(pluginName_, StaticType::Name<R>(), response.GetValue().body);
    return Failure{result.GetFailure().text};
  }

  // For a last part that has applied its result: what arrived later may be handled from here on,
  // before it returns.
  void EndTurn() { turn_ = 0; }

  // Handles the responses that come without a request. `handler` runs under the lock.
  void SubscribeAsync(std::string_view service, std::string_view method, Completion handler);

  // Hands the platform messages of a subtopic to `handler`, which runs as a task of its own.
  void SubscribeSvds(std::string_view subtopic,
                     std::function<void(const PluginSvdsEvent& event)> handler);

 private:
  bool IsFinalising() const { return host_.IsStopping() || responses_.IsFinalising(); }
  // Calls the method; `handler` is then used on a module task. `post`: posts one for it, otherwise
  // the caller waits and handles what has arrived.
  std::string InvokeInOrder(const ServiceCall& call, const CallArguments& arguments,
                            std::unique_ptr<ResponseHandler> handler, bool post = false);
  // Handles the responses that have arrived, up to the first that must not be handled yet, or one
  // part of a longer one. All tasks that wait and one that is posted take turns with its parts: no
  // task keeps a response to itself while another runs, so any of them can end it.
  void HandleArrived() noexcept;
  bool HandlePart(const ArrivalQueue::Delivery& arrived) noexcept;
  // The part or response whose turn it is; empty: there is none yet.
  ArrivalQueue::Place TakeNext();
  // False: no task will handle what has arrived, unless one waits.
  bool PostHandling() noexcept;
  std::string Send(const ServiceCall& call, const CallArguments& arguments,
                   ResponseTable::Pending pending);
  // Both return the request's key.
  Maybe<std::string> SendByUuid(const ServiceCall& call, const CallArguments& arguments);
  Maybe<std::string> SendByMethod(const ServiceCall& call, const std::string& key,
                                  const CallArguments& arguments);
  Maybe<Response> SendToSession(const ServiceCall& call, const CallArguments& arguments,
                                OutgoingRequest* request);
  // Subscribes; each event is read on the thread it comes on and handed to `handle`. One that
  // cannot be read is logged, and its text handed to `handleUnreadable`.
  template <class Event, class Handle, class HandleUnreadable>
  void Follow(std::string_view name, Handle handle, HandleUnreadable handleUnreadable);
  // `areAwaited`: a request waits for each, and fails when its response cannot be read.
  void FollowResponses(std::string_view name,
                       void (ResponseTable::*handle)(PluginServiceProxyResponse response),
                       bool areAwaited);
  void OnSvdsEvent(PluginSvdsEvent event);

  HostServices& host_;
  AppModule& module_;
  SiblingClient& client_;
  const std::string& pluginName_;
  const std::string handlingTask_;        // one that is queued serves for all that has arrived
  std::atomic<uint64_t> nextMessage_{0};  // keeps task names apart, so that none is merged away
  ResponseTable responses_;
  ArrivalQueue arrived_;
  ArrivalQueue::Place begun_;  // the response of which parts are left; it goes before all others
  uint64_t turn_ = 0;          // the arrival number of the response that is being applied; 0: none
  std::map<std::string, std::function<void(const PluginSvdsEvent&)>> svdsHandlers_;  // by subtopic
};

}  // namespace Kest::Client
