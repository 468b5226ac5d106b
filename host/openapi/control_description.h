// What a control of the development host is called with and returns, as the API document describes
// it. controls.json has them all; it is part of the program. Code finds a control by its method and
// path, and what carries it out by its operation id.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/json/json.h"

namespace Kest::Host {

constexpr std::string_view kControlPrefix = "/_host";
// Precedes the name of a parameter that is a header.
constexpr std::string_view kHeaderMark = "header ";

// The file: {"controls": [..], "schemas": {name: shorthand}}.
extern const std::string_view kControlsText;

// `parameters`, `body` and `response` are shorthands of schema_shorthand.h; null: there is none.
struct ControlDescription {
  std::string method;       // "PUT"
  std::string path;         // "/_host/service/{method}"
  std::string operationId;  // "OverrideService"
  std::string summary;
  // By name: the query arguments, "header <name>", and parameters of the path that are no strings.
  Json parameters;
  // A body may be left out unless it has required members or may be any value.
  Json body;
  // Of a JSON response; or an object of schemas by content type.
  Json response;

  // The body is a text of one of several content types, which the control reads itself: then `body`
  // is an object of schemas by content type.
  bool TakesText() const {
    return body.is_object() && !body.empty() && body.begin().key().find('/') != std::string::npos;
  }
  bool TakesAnyBody() const { return body.is_object() && body.value("$", "") == "any"; }
  // Whether the response is a stream of events without end.
  bool IsStream() const { return response.is_object() && response.contains("text/event-stream"); }
};

// In the order of the document. [any thread]
const std::vector<ControlDescription>& AllControls();

}  // namespace Kest::Host
