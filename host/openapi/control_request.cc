#include "host/openapi/control_request.h"

#include <set>

#include "host/json/json_text.h"
#include "host/url/url_text.h"

namespace Kest::Host {
namespace {

// A parameter of the query, and none of the path or the head.
bool IsQueryParameter(const FoundControl& found, const std::string& name) {
  return found.control->parameters.contains(name) && !found.arguments.contains(name) &&
         !name.starts_with(kHeaderMark);
}

std::string KnownParameters(const FoundControl& found) {
  std::string known;
  for (const auto& [name, schema] : found.control->parameters.items()) {
    if (IsQueryParameter(found, name)) known.append(known.empty() ? "" : ", ").append(name);
  }
  return known.empty() ? "none" : known;
}

std::string About(const std::string& name, std::string_view fault) {
  return std::string("The query parameter ").append(JsonString(name)).append(fault);
}

}  // namespace

std::optional<std::string> QueryFault(const FoundControl& found, const RequestTarget& target) {
  if (HasBrokenEscape(target.query)) return "The query has a broken escape; \"%\" itself is %25.";
  std::set<std::string> seen;
  for (const auto& [name, value] : target.Parameters()) {
    if (!IsQueryParameter(found, name)) {
      std::string fault = "Unknown query parameter ";
      fault.append(JsonString(name)).append("; known here: ");
      return fault.append(KnownParameters(found)).append(".");
    }
    if (value.empty()) return About(name, " has no value.");
    if (!seen.insert(name).second) return About(name, " comes twice.");
  }
  return std::nullopt;
}

std::optional<std::string> BodyFault(const ControlDescription& control, std::string_view body) {
  if (!control.body.is_null() || body.empty()) return std::nullopt;
  const Json value = ParseJson(body);
  if (value.is_object() && value.empty()) return std::nullopt;
  return control.method + " " + control.path + " takes no body.";
}

}  // namespace Kest::Host
