// Writes the timeline's rows for what crosses the plugin's interface and the ledger's entries for
// the transactions among it.
//
// Threads: any.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/timeline/ledger.h"
#include "host/timeline/timeline.h"

namespace Kest::Host {

class Traffic {
 public:
  // Both outlive it.
  Traffic(Timeline* timeline, Ledger* ledger) : timeline_(timeline), ledger_(ledger) {}

  struct Message {
    std::string_view contentType;
    std::string_view body;
  };

  // Each returns the row's id.
  // A request of the plugin: to a sibling, or a call of the platform's service.
  uint64_t AddRequest(std::string_view method, std::string_view url, const Message& sent);
  // The response to the request of the row `request`. That a call was accepted has no row: its
  // response is an event.
  uint64_t AddResponse(uint64_t request, std::string_view url, int status, std::string_view failure,
                       const Message& received);
  // An event of the service: the response to the call of the row `cause`, or a platform message.
  uint64_t AddServiceEvent(std::string_view name, std::string_view payload, uint64_t cause);
  // A change of a sibling's resource; `name` is "OnJsonApiEvent_" and the path.
  uint64_t AddResourceEvent(std::string_view name, std::string_view payload);

  Timeline& Rows() const { return *timeline_; }
  Ledger& Transactions() const { return *ledger_; }

 private:
  uint64_t AddCall(std::string_view body);
  uint64_t AddServiceResponse(uint64_t call, std::string_view method, std::string_view error,
                              std::string_view result);

  Timeline* const timeline_;
  Ledger* const ledger_;
};

}  // namespace Kest::Host
