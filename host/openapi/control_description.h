// What a control of the development host is called with and returns: one row of the tables that
// route its requests, as the API document describes it.
#pragma once

#include <string_view>

namespace Kest::Host {

constexpr std::string_view kControlPrefix = "/_host";

// A body or a response of any form.
constexpr std::string_view kAnyValue = R"({"$": "any", "description": "Any value."})";

// `parameters`, `body` and `response` are shorthands of schema_shorthand.h; empty: there is none.
struct ControlDescription {
  std::string_view method;       // "PUT"
  std::string_view path;         // "/_host/service/{method}"
  std::string_view operationId;  // "OverrideService"
  std::string_view summary;
  // By name: the query arguments, "header <name>", and parameters of the path that are no strings.
  std::string_view parameters = {};
  // A body may be left out unless it has required members or may be any value.
  std::string_view body = {};
  // Of a JSON response; or an object of schemas by content type.
  std::string_view response = {};
};

}  // namespace Kest::Host
