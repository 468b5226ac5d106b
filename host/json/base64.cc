#include "host/json/base64.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace Kest::Host {
namespace {

constexpr std::string_view kBase64Alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

std::string EncodeBase64(std::string_view bytes) {
  std::string out;
  for (size_t i = 0; i < bytes.size(); i += 3) {
    const size_t left = bytes.size() - i;
    uint32_t group = 0;
    for (size_t k = 0; k < 3; ++k) {
      group = group << 8 | (k < left ? static_cast<unsigned char>(bytes[i + k]) : 0U);
    }
    for (size_t k = 0; k < 4; ++k) {
      out += k <= left ? kBase64Alphabet[group >> (18 - 6 * k) & 63] : '=';
    }
  }
  return out;
}

std::optional<std::string> DecodeBase64(std::string_view text) {
  if (text.size() % 4 != 0) return std::nullopt;
  const std::string_view digits = text.substr(0, std::min(text.find('='), text.size()));
  if (text.size() - digits.size() > 2) return std::nullopt;
  std::string bytes;
  uint32_t bits = 0;
  int count = 0;
  for (const char digit : digits) {
    const size_t value = kBase64Alphabet.find(digit);
    if (value == std::string_view::npos) return std::nullopt;
    bits = bits << 6 | static_cast<uint32_t>(value);
    count += 6;
    if (count < 8) continue;
    count -= 8;
    bytes += static_cast<char>(bits >> count & 0xFFU);
  }
  // Also bits or padding that no encoder leaves.
  if (EncodeBase64(bytes) != text) return std::nullopt;
  return bytes;
}

}  // namespace Kest::Host
