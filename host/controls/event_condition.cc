#include "host/controls/event_condition.h"

#include "host/json/json_text.h"

namespace Kest::Host {
namespace {

// "" and what begins with "/", where "~" is always followed by 0 or 1.
bool IsPointer(const std::string& text) {
  if (!text.empty() && text.front() != '/') return false;
  for (size_t at = text.find('~'); at != std::string::npos; at = text.find('~', at + 1)) {
    const char next = at + 1 < text.size() ? text[at + 1] : ' ';
    if (next != '0' && next != '1') return false;
  }
  return true;
}

// What is there; null when nothing is.
const nlohmann::json* Find(const nlohmann::json& document,
                           const nlohmann::json::json_pointer& pointer) {
  try {
    return document.contains(pointer) ? &document[pointer] : nullptr;
  } catch (const nlohmann::json::exception&) {  // an index beyond all numbers
    return nullptr;
  }
}

}  // namespace

EventCondition::EventCondition(FieldReader& fields) {
  for (const auto& [name, value] : fields.ObjectOr("where").items()) {
    if (IsPointer(name)) {
      parts_.emplace_back(nlohmann::json::json_pointer(name), value);
    } else {
      fields.FailName(value, JsonString(name) + " is no JSON pointer; one is \"/data/count\"");
    }
  }
}

bool EventCondition::Holds(const std::string& event) const {
  if (parts_.empty()) return true;
  const auto document = nlohmann::json::parse(event, nullptr, false);
  for (const auto& [pointer, wanted] : parts_) {
    const nlohmann::json* const found = Find(document, pointer);
    if (found == nullptr || *found != wanted) return false;
  }
  return true;
}

}  // namespace Kest::Host
