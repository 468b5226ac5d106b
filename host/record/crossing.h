// One crossing of the C interface, as a line of a recording has it.
//
//   {"n":4,"task":4,"thread":"task","session":1,"to":"plugin","call":"start"}   the host calls
//   {"n":5,"task":4,"thread":"task","to":"host","call":"identify","args":{...}}  the plugin calls;
//                                                   with "result" when the entry returns something
//   {"n":6,"task":4,"thread":"task","to":"host","call":"yield"}      others run
//   {"n":9,"task":4,"thread":"task","to":"plugin","return":"yield"}  the task goes on
//   {"n":12,"task":4,"thread":"task","to":"host","return":"start","result":true}
//
// "n" is a number of its own, "task" that of the call of the host under which all this happens.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/maybe_type.h"
#include "host/json/json.h"

namespace Kest::Host {

struct Crossing {
  enum class Kind {
    kEnter,   // the host calls the plugin
    kCall,    // the plugin calls the host; with the result, but for "yield"
    kResume,  // a yield returns
    kLeave,   // the plugin returns from what the host called
  };

  uint64_t number = 0;
  uint64_t task = 0;
  std::string thread = {};  // "task", "service event" or "other"
  uint64_t session = 0;     // of kEnter: counts the loads of a library
  Kind kind = Kind::kCall;
  std::string function = {};
  Json arguments = {};  // null or an object
  Json result = {};     // null: returns nothing
};

inline constexpr std::string_view kYield = "yield";
inline constexpr std::string_view kLoad = "load";
inline constexpr std::string_view kUnload = "unload";
// The width of this program. The order of a plugin's hash tables depends on it.
inline constexpr uint64_t kOwnBits = sizeof(void*) * 8;

Json ToJson(const Crossing& crossing);
// A failure says what is wrong with the line.
Maybe<Crossing> ToCrossing(const Json& line);

}  // namespace Kest::Host
