// One step of a simulation, and its line in a script:
//
//   ask 5123 POST /tav-loot/v1/refresh?force=true     a user sends a request: method, url, body
//   platform 88 PUT /service/getClientConfiguration {"error":"down"}
//                                                     the platform's other side: a control, its
//                                                     body
//   wait 12 3000                                      milliseconds pass
//   response 9 lost 0                                 the next response: lost, twice MS, late MS
//   refuse 4                                          the plugin's next request is not taken
//   memory 71 12                                      the plugin's 12th allocation from now fails
//   cap 71 4000                                       its blocks above 4000 bytes are refused
//   restart 6                                         stop in the middle; then load and start
//   quiet 3                                           all that is due happens; then the checks
//
// The number after the word chooses what runs next after the step, so that a step behaves alike
// when others before it are left out.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/maybe_type.h"

namespace Kest::Host {

enum class StepKind { kAsk, kPlatform, kWait, kResponse, kRefuse, kMemory, kCap, kRestart, kQuiet };

struct Step {
  StepKind kind = StepKind::kQuiet;
  uint64_t random = 0;
  std::string method;  // of an ask or a control; what happens to a response
  std::string path;
  std::string body;
  int64_t number = 0;  // of milliseconds or allocations
};

struct Script {
  uint64_t seed = 1;     // of the world
  bool inOrder = false;  // the platform's responses keep their order
  std::vector<Step> steps;
};

std::string WriteStep(const Step& step);
// The first line is "simulation SEED ordered|free".
std::string WriteScript(const Script& script);
// A failure names the line.
Maybe<Script> ReadScript(std::string_view text);

}  // namespace Kest::Host
