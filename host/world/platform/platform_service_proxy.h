// The host endpoints that reach the platform's services: calls whose result is in the response, and
// calls whose result is an event after the service's latency.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/world/data/world_events.h"
#include "host/world/input/document.h"
#include "host/world/loot/loot_service.h"
#include "host/world/platform/platform_session.h"

namespace Kest::Host {

// What the next calls of a method do instead of what they would.
struct CallOverride {
  std::optional<int64_t> latency;  // milliseconds
  std::string error;               // not empty: the call fails with it and does nothing
  std::string status;              // not empty: a transaction is refused with this word
  int64_t times = 1;               // how many calls it is for
};

class PlatformServiceProxy {
 public:
  struct OutstandingCall {
    std::string key;   // the request's id or key
    std::string call;  // "loot.redeemPlayerLoot"
    int64_t due = 0;   // by the clock, in milliseconds
  };

  // All must outlive the proxy. `now` gives milliseconds.
  PlatformServiceProxy(const WorldData& data, LootService& loot, PlatformSession& session,
                       std::vector<WorldEvent>& outbox, const std::function<int64_t()>& now,
                       uint64_t seed)
      : data_(data), loot_(loot), session_(session), outbox_(outbox), now_(now), ids_(seed) {}

  // Handles a host endpoint; nothing for another path. `body` is {"serviceName", "methodName",
  // "args"}, for method requests also "requestKey" and "flag".
  std::optional<WorldResponse> Post(std::string_view path, std::string_view body);

  // Replaces the override of a method, or removes it.
  void SetOverride(const std::string& method, std::optional<CallOverride> override);

  const std::map<std::string, int64_t>& callCounts() const { return callCounts_; }
  // The latest 1,000: {"accountId", "msgId", "command"}.
  const std::deque<Json>& acknowledgements() const { return acknowledgements_; }
  // Calls whose event is still to come.
  std::vector<OutstandingCall> Outstanding();

 private:
  struct ServiceCall {
    Document body;
    std::string service;
    std::string method;
    std::string requestKey;
    const Json* arguments;  // a list of the body
  };
  struct Reply {
    Maybe<Json> result;
    int64_t latency;
  };

  static Maybe<ServiceCall> ReadCall(std::string_view body);
  Reply Run(const ServiceCall& call);
  Maybe<Json> Serve(const ServiceCall& call);
  Maybe<Json> Acknowledge(const ServiceCall& call);
  void SendLater(std::string_view eventName, const std::string& key, const ServiceCall& call,
                 const Reply& reply);
  std::string NewRequestId();

  const WorldData& data_;
  LootService& loot_;
  PlatformSession& session_;
  std::vector<WorldEvent>& outbox_;
  const std::function<int64_t()>& now_;
  SeededRandom ids_;
  std::map<std::string, CallOverride> overrides_;
  std::map<std::string, int64_t> callCounts_;  // by "service.method"
  std::deque<Json> acknowledgements_;
  std::vector<OutstandingCall> outstanding_;
};

// Whether the method's result has a status word that an override can set.
bool HasStatusWord(std::string_view method);

}  // namespace Kest::Host
