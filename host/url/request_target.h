// The parts of a request's target: "/path?name=value&other=x".
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Kest::Host {

struct RequestTarget {
  std::string_view path;
  std::string_view query;  // after the "?"

  // Borrows `target`.
  static RequestTarget Split(std::string_view target);
  // The decoded value of the first parameter of that name; empty text when it has no "=".
  std::optional<std::string> Parameter(std::string_view name) const;
  // All of them, names and values decoded.
  std::vector<std::pair<std::string, std::string>> Parameters() const;
};

// The parts of a path, decoded: what follows each "/", also when that is nothing ("/a//" has
// three).
std::vector<std::string> PathParts(std::string_view path);

// An integer of decimal digits alone, or nothing.
std::optional<uint64_t> ParseNumber(std::string_view text);

}  // namespace Kest::Host
