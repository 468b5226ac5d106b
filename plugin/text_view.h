// Text and bytes of the C interface as views, and back. Nothing is copied.
#pragma once

#include <string_view>

#include "plugin/host_interface.h"

namespace Kest {

inline KestText ToText(std::string_view text) {
  return {text.data(), text.size()};
}

inline KestBytes ToBytes(std::string_view text) {
  return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

// A null pointer is an empty string of any size.
inline std::string_view ToView(KestText text) {
  return text.data != nullptr ? std::string_view(text.data, text.size) : std::string_view();
}

inline std::string_view ToView(KestBytes bytes) {
  return bytes.data != nullptr
             ? std::string_view(reinterpret_cast<const char*>(bytes.data), bytes.size)
             : std::string_view();
}

}  // namespace Kest
