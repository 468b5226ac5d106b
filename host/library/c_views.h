// Between the C interface's views and the standard ones. A view lends, it never owns.
#pragma once

#include <string>
#include <string_view>

#include "plugin/host_interface.h"

namespace Kest::Host {

inline std::string_view View(KestText text) {
  return text.data == nullptr ? std::string_view() : std::string_view(text.data, text.size);
}

inline std::string_view View(KestBytes bytes) {
  if (bytes.data == nullptr) return {};
  return {reinterpret_cast<const char*>(bytes.data), bytes.size};
}

inline KestText Text(std::string_view text) {
  return {text.data(), text.size()};
}

inline KestBytes Bytes(std::string_view bytes) {
  return {reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()};
}

}  // namespace Kest::Host
