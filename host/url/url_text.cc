#include "host/url/url_text.h"

#include <charconv>
#include <optional>

namespace Kest::Host {
namespace {

constexpr size_t kEscapeSize = 3;

// What "%XX" at the beginning of `text` stands for.
std::optional<char> EscapedByte(std::string_view text) {
  if (text.size() < kEscapeSize || text.front() != '%') return std::nullopt;
  unsigned byte = 0;
  const char* const end = text.data() + kEscapeSize;
  const auto [last, error] = std::from_chars(text.data() + 1, end, byte, 16);
  if (error != std::errc() || last != end) return std::nullopt;
  return static_cast<char>(byte);
}

}  // namespace

std::string_view TakeUpTo(char separator, std::string_view* text) {
  const size_t end = text->find(separator);
  const std::string_view head = text->substr(0, end);
  text->remove_prefix(end == std::string_view::npos ? text->size() : end + 1);
  return head;
}

std::string_view TakeTrimmedUpTo(char separator, std::string_view* text) {
  std::string_view head = TakeUpTo(separator, text);
  while (head.starts_with(' ')) head.remove_prefix(1);
  while (head.ends_with(' ')) head.remove_suffix(1);
  return head;
}

std::string DecodePercent(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    const auto byte = EscapedByte(text);
    out += byte.value_or(text.front());
    text.remove_prefix(byte ? kEscapeSize : 1);
  }
  return out;
}

bool HasBrokenEscape(std::string_view text) {
  for (size_t i = text.find('%'); i != text.npos; i = text.find('%', i + kEscapeSize)) {
    if (!EscapedByte(text.substr(i))) return true;
  }
  return false;
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
