// What a published event has to be like.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "host/json/json.h"
#include "host/world/input/field_reader.h"

namespace Kest::Host {

class EventCondition {
 public:
  // Reads the member "where", an object: each name is a JSON pointer into the event's {"uri",
  // "eventType", "data"}, each value what is there. A name that is no pointer is reported.
  explicit EventCondition(FieldReader& fields);

  // Whether all of it is there in `event`, a JSON text. The order of members does not count.
  bool Holds(const std::string& event) const;

 private:
  std::vector<std::pair<nlohmann::json::json_pointer, nlohmann::json>> parts_;
};

}  // namespace Kest::Host
