#include "host/url/url_text.h"

#include <charconv>

namespace Kest::Host {

std::string_view TakeUpTo(char separator, std::string_view* text) {
  const size_t end = text->find(separator);
  const std::string_view head = text->substr(0, end);
  text->remove_prefix(end == std::string_view::npos ? text->size() : end + 1);
  return head;
}

std::string DecodePercent(std::string_view text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    unsigned byte = 0;
    if (text[i] == '%' && i + 2 < text.size()) {
      const char* const digits = text.data() + i + 1;
      const auto [end, error] = std::from_chars(digits, digits + 2, byte, 16);
      if (error == std::errc() && end == digits + 2) {
        out += static_cast<char>(byte);
        i += 2;
        continue;
      }
    }
    out += text[i];
  }
  return out;
}

std::string EncodePercent(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  constexpr std::string_view kPlain =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
  std::string out;
  for (const char character : text) {
    if (kPlain.find(character) != std::string_view::npos) {
      out += character;
      continue;
    }
    const auto byte = static_cast<unsigned char>(character);
    out.append({'%', kDigits[byte >> 4], kDigits[byte & 15]});
  }
  return out;
}

}  // namespace Kest::Host
