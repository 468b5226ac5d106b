// One request from the host, and one argument of a direct invocation.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace Kest {

class BindingProperty;

// A larger body is rejected with "Body is too large" before any of it is read.
inline constexpr size_t kMaxBodyBytes = size_t{64} * 1024 * 1024;

struct HeaderPair {
  std::string_view name;
  std::string_view value;
};

// Views are lent for the call. Strings are UTF-8, `body` is bytes.
struct Request {
  std::string_view method;              // "GET"; compared exactly
  std::string_view url;                 // raw path, then "?" and the query if any; percent-encoded
  std::string_view contentType;         // of `body`
  std::string_view body;                // no bytes: no body
  std::string_view accept;              // an Accept header; empty: "application/json"
  std::span<const HeaderPair> headers;  // only pairs meant as arguments: any other is rejected
};

// One argument of a direct invocation: a string to be decoded, or a value to be stored as it is.
struct NamedValue {
  std::optional<std::string_view> name;  // none: the argument at this place in the list
  std::string_view contentType;          // of `text`
  std::string_view text;
  const BindingProperty* value = nullptr;  // if given, replaces `text`
};

}  // namespace Kest
