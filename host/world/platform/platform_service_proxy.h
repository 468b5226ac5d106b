// The host endpoints that reach the platform's services: calls whose result is in the response, and
// calls whose result is an event after the service's latency. CallFault rules may change what a
// call does and how its result comes, or hold it until a control decides.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/faults/fault_rules.h"
#include "host/world/data/world_events.h"
#include "host/world/input/document.h"
#include "host/world/loot/loot_service.h"
#include "host/world/platform/platform_session.h"

namespace Kest::Host {

class PlatformServiceProxy {
 public:
  struct OutstandingCall {
    std::string key;   // the request's id or key
    std::string call;  // "loot.redeemPlayerLoot"
    int64_t due = 0;   // by the clock, in milliseconds
  };

  // How a held call ends.
  struct Ending {
    enum class Kind { kRelease, kFail, kRespond };
    Kind kind = Kind::kRelease;  // it is carried out now
    std::string error;           // of kFail
    Json result;                 // of kRespond; nothing else is done
  };

  // Calls beyond are carried out instead of held.
  static constexpr size_t kMostHeld = 256;

  // All must outlive the proxy. `now` gives milliseconds.
  PlatformServiceProxy(const WorldData& data, LootService& loot, PlatformSession& session,
                       FaultRules& faults, std::vector<WorldEvent>& outbox,
                       const std::function<int64_t()>& now, uint64_t seed)
      : data_(data),
        loot_(loot),
        session_(session),
        faults_(faults),
        outbox_(outbox),
        now_(now),
        ids_(seed) {}

  // Handles a host endpoint; nothing for another path. `body` is {"serviceName", "methodName",
  // "args"}, for method requests also "requestKey" and "flag".
  std::optional<WorldResponse> Post(std::string_view path, std::string_view body);

  const std::map<std::string, int64_t>& callCounts() const { return callCounts_; }
  // The latest 1,000: {"accountId", "msgId", "command"}.
  const std::deque<Json>& acknowledgements() const { return acknowledgements_; }
  // Calls whose event is still to come.
  std::vector<OutstandingCall> Outstanding();

  // The held calls: [{"id", "service", "method", "key", "arguments"}].
  Json HeldJson() const;
  // False: no call is held under this number.
  bool EndHeld(std::string_view id, const Ending& ending);
  // Responses of held requests since the last call.
  std::vector<ReleasedResponse> TakeReleased() { return std::exchange(released_, {}); }

 private:
  // Where a call's result comes.
  enum class Way { kResponse, kUuidEvent, kMethodEvent };

  struct ServiceCall {
    Document body;
    std::string service;
    std::string method;
    std::string requestKey;
    const Json* arguments;  // a list of the body
    Way way = Way::kResponse;
  };
  struct HeldCall {
    Way way;
    std::string key;
    std::string body;
    uint64_t cause;
  };

  static std::optional<Way> WayOf(std::string_view path);
  static Maybe<ServiceCall> ReadCall(std::string_view body);
  WorldResponse Hold(const ServiceCall& call, std::string_view body);
  Maybe<Json> Run(const ServiceCall& call, const CallFault& fault);
  Maybe<Json> Serve(const ServiceCall& call);
  Maybe<Json> Acknowledge(const ServiceCall& call);
  int64_t LatencyOf(const std::string& method) const;
  static WorldResponse Accepted(const ServiceCall& call);
  static WorldResponse ResultResponse(const Maybe<Json>& result);
  void SendEvent(const ServiceCall& call, const Maybe<Json>& result, int64_t latency,
                 const CallFault& fault, uint64_t cause);
  std::string NewRequestId();

  const WorldData& data_;
  LootService& loot_;
  PlatformSession& session_;
  FaultRules& faults_;
  std::vector<WorldEvent>& outbox_;
  const std::function<int64_t()>& now_;
  SeededRandom ids_;
  std::map<std::string, int64_t> callCounts_;  // by "service.method"
  std::deque<Json> acknowledgements_;
  std::vector<OutstandingCall> outstanding_;
  std::map<uint64_t, HeldCall> held_;
  uint64_t lastHeld_ = 0;
  std::vector<ReleasedResponse> released_;
};

}  // namespace Kest::Host
