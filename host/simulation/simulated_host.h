// The host's side of the C interface on a virtual scheduler: the service table the plugin is given,
// the platform it leads to, and a network between the two that can lose, repeat and delay
// responses.
//
// Threads: the scheduler's.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/audit/response_ledger.h"
#include "host/library/owned_services.h"
#include "host/simulation/machine/virtual_scheduler.h"
#include "host/world/world.h"
#include "plugin/host_interface.h"

namespace Kest::Host {

// What the network does to the next response of a service.
struct ResponseFault {
  enum class Kind { kNone, kLost, kTwice, kLate };
  Kind kind = Kind::kNone;
  int64_t milliseconds = 0;  // of a late one
};

// Learns what passes between plugin and host.
class HostObserver {
 public:
  virtual ~HostObserver() = default;
  virtual void OnPublish(std::string_view path, int32_t eventType, std::string_view json) = 0;
  virtual void OnLog(int32_t level, std::string_view line) = 0;
  // A resource event reaches the plugin; `data` is nothing for a deletion.
  virtual void OnResource(std::string_view path, std::optional<std::string_view> data) = 0;
  // The plugin sends a request, and later its response reaches the plugin.
  virtual void OnRequest(std::string_view method, std::string_view url) = 0;
  virtual void OnResponse(std::string_view method, std::string_view url, int32_t status) = 0;
};

class SimulatedHost {
 public:
  // `inOrder`: responses of services reach the plugin in the order the platform gave them. All
  // outlive the host.
  SimulatedHost(World* world, VirtualScheduler* scheduler, HostObserver* observer, bool inOrder);
  SimulatedHost(const SimulatedHost&) = delete;
  SimulatedHost& operator=(const SimulatedHost&) = delete;

  const KestHostServices* Table() const { return &services_.table; }

  // Plays the platform's other side.
  WorldResponse Control(std::string_view method, std::string_view path, std::string_view body);
  void SetNextResponse(ResponseFault fault) { nextResponse_ = fault; }
  // The plugin's next request is refused.
  void RefuseNextRequest() { refuseRequest_ = true; }
  // The plugin has gone: nothing of it is called any more.
  void Close();

  std::vector<std::string> SubscribedNames() const;
  // Requests of the plugin whose response has not reached it.
  size_t OpenRequests() const { return openRequests_; }
  // Responses that were lost since the plugin started.
  size_t LostResponses() const { return lostResponses_; }
  ResponseLedger& Ledger() { return ledger_; }

 private:
  struct Entries;
  struct Subscription {
    KestDelivery delivery;
    void* context;
    uint64_t serial;
  };
  struct Sent;

  bool Request(const KestRequest& request, KestCompletion completion, void* context);
  void Complete(const Sent& sent);
  bool Subscribe(std::string_view name, KestDelivery delivery, void* context);
  int32_t PostTask(std::string_view name, KestTask run, void* context);
  void DispatchWorldEvents();
  void SendResponse(const WorldEvent& event);
  void Deliver(const std::string& name, const std::string& payload, uint64_t serial);
  void QueueResourceEvent(const std::string& name, const std::string& payload);

  World* const world_;
  VirtualScheduler* const scheduler_;
  HostObserver* const observer_;
  const bool inOrder_;
  OwnedServices<SimulatedHost> services_;
  ResponseLedger ledger_;
  std::map<std::string, Subscription, std::less<>> subscriptions_;
  uint64_t nextSerial_ = 0;
  uint64_t nextUuid_ = 0;
  uint64_t generation_ = 0;  // of the plugin; what belongs to an earlier one is dropped
  ResponseFault nextResponse_;
  bool refuseRequest_ = false;
  int64_t lastDue_ = 0;
  size_t openRequests_ = 0;
  size_t lostResponses_ = 0;
};

}  // namespace Kest::Host
