// One rule of what goes wrong between the plugin and its surroundings: which calls it is for, how
// often, and what happens to them.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "host/world/input/field_reader.h"

namespace Kest::Host {

// What a rule is for. Its pattern is compared with the name in parentheses.
enum class FaultTarget {
  kService,   // calls of the platform's service (method)
  kSibling,   // requests for sibling resources, and events of them (path)
  kPublished  // what the plugin publishes, on its way to the event stream (path)
};

enum class FaultAction {
  kDelay,
  kFail,       // service: an error, nothing done; sibling: no such value, or a broken owner
  kRefuse,     // a transaction's status word, nothing done
  kGarble,     // a value of another shape
  kDrop,       // done, but its response or event never comes
  kDouble,     // its response or event comes twice
  kEarly,      // the response overtakes the one that says that the call has begun
  kUnknownId,  // the response has an id that no call has
  kHold,       // nothing is done until a control says what
  kDelete      // the resource seems to be deleted
};

// What happens to one call.
struct CallFault {
  FaultAction action = FaultAction::kDelay;
  std::optional<int64_t> delay;  // milliseconds, instead of the usual ones
  std::string error;             // of kFail
  int status = 500;              // of kFail: the HTTP status of a sibling
  std::string statusWord;        // of kRefuse
  Json payload;                  // of kGarble
};

struct FaultRule {
  static constexpr int64_t kAlways = std::numeric_limits<int64_t>::max();
  static constexpr int64_t kMostTimes = 1'000'000;

  uint64_t id = 0;  // among the rules of a run; FaultRules gives it
  FaultTarget target = FaultTarget::kService;
  std::string pattern;      // "*" matches any part
  int64_t nth = 1;          // the first matching call that it is for
  int64_t times = kAlways;  // for how many calls
  double probability = 1;
  struct {
    int64_t from = 0;
    int64_t to = 0;
  } delay;  // when `fault` has one: at random, both ends included
  CallFault fault;

  int64_t matched = 0;
  int64_t applied = 0;
};

// The longest delay, in milliseconds.
inline constexpr int64_t kLongestDelay = 600'000;

// Reads a rule as FaultRuleJson writes it; its id and counts are ignored. The caller finishes the
// reader.
FaultRule ReadFaultRule(FieldReader& fields);
Json FaultRuleJson(const FaultRule& rule);

// Why calls that match `pattern` cannot all be refused; empty when they can.
std::string StatusWordFault(std::string_view pattern);

// The word of an action in rules: "unknown-id".
std::string_view FaultActionName(FaultAction action);

// Whether `text` is `pattern`, of which each "*" stands for any characters, "/" included.
bool MatchesPattern(std::string_view pattern, std::string_view text);

}  // namespace Kest::Host
