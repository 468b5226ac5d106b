// What each craft and redeem took and gave, and which were refused, as the platform reported it.
// The newest entries are held, up to a count and a number of bytes.
//
// Threads: any.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "base/mutex.h"
#include "host/json/json.h"

namespace Kest::Host {

// Whether the method of the loot service is a transaction.
bool IsTransaction(std::string_view serviceAndMethod);

// Why a transaction did not happen.
struct Refusal {
  uint64_t row = 0;     // of the service's response
  std::string status;   // the platform's word; "ERROR" when the call failed
  std::string details;  // in words
};

// A header's value: JSON of ASCII characters alone, {"row", "status", "details"}.
std::string RefusalHeader(const Refusal& refusal);

class Ledger {
 public:
  static constexpr size_t kMostEntries = 1000;
  static constexpr size_t kMostBytes = size_t{8} * 1024 * 1024;
  static constexpr size_t kMostOpen = 1000;

  struct Call {
    std::string method;    // "loot.redeemPlayerLoot"
    uint64_t request = 0;  // the row of the client's request that it is for; 0: none
    Json order;            // what was asked for: "recipe", "items", "repeat" or "lootName"
  };
  struct Response {
    uint64_t row = 0;
    int64_t time = 0;
    std::string status;     // of the transaction, or "ERROR"
    std::string details;    // why not
    Json result = nullptr;  // of the transaction; null for an error
  };

  // A transaction has been asked for by the row `call`.
  void Open(uint64_t call, Call asked);
  // The response to it. One that comes again, or to no known call, has no entry.
  void Close(uint64_t call, const Response& response);

  // Oldest first. `refused`: those that did not happen, or the others; without it all.
  Json Entries(uint64_t after, std::optional<bool> refused, size_t limit) const;
  // Why the transaction of a client's request did not happen, the last one if there were several.
  std::optional<Refusal> RefusalOf(uint64_t request) const;

 private:
  struct Entry {
    uint64_t request;
    std::optional<Refusal> refusal;
    uint64_t row;
    std::string json;
  };

  mutable Mutex mutex_;
  std::map<uint64_t, Call> open_ KEST_GUARDED_BY(mutex_);  // by row
  std::deque<Entry> entries_ KEST_GUARDED_BY(mutex_);
  size_t bytes_ KEST_GUARDED_BY(mutex_) = 0;
};

}  // namespace Kest::Host
