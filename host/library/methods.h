// The HTTP methods by the method ids of the C interface.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace Kest::Host {

constexpr std::string_view kMethodNames[] = {"",        "DELETE", "GET",  "HEAD",
                                             "OPTIONS", "PATCH",  "POST", "PUT"};

// Empty for an unknown id.
constexpr std::string_view MethodName(int32_t id) {
  const bool known = id > 0 && static_cast<size_t>(id) < std::size(kMethodNames);
  return kMethodNames[known ? id : 0];
}

}  // namespace Kest::Host
