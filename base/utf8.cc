#include "base/utf8.h"

#include <cstring>

namespace Kest {
namespace {

// Whether the next 16 bytes are all ASCII.
bool IsAsciiBlock(const char* at) {
  uint64_t words[2];
  std::memcpy(words, at, sizeof(words));
  return ((words[0] | words[1]) & 0x8080808080808080ull) == 0;
}

bool IsTail(char c) {
  return (static_cast<uint8_t>(c) & 0xc0) == 0x80;
}

}  // namespace

size_t Utf8CharacterSize(std::string_view text) {
  const auto lead = static_cast<uint8_t>(text[0]);
  if (lead < 0x80) return 1;
  if (lead < 0xc2 || lead > 0xf4) return 0;
  const size_t size = lead < 0xe0 ? 2 : lead < 0xf0 ? 3 : 4;
  if (text.size() < size) return 0;
  // Only the second byte has bounds that depend on the lead.
  const auto second = static_cast<uint8_t>(text[1]);
  const uint8_t low = lead == 0xe0 ? 0xa0 : lead == 0xf0 ? 0x90 : 0x80;
  const uint8_t high = lead == 0xed ? 0x9f : lead == 0xf4 ? 0x8f : 0xbf;
  if (second < low || second > high) return 0;
  for (size_t i = 2; i < size; ++i) {
    if (!IsTail(text[i])) return 0;
  }
  return size;
}

char* WriteUtf8(uint32_t character, char* to) {
  if (character < 0x80) {
    *to = static_cast<char>(character);
    return to + 1;
  }
  const int tails = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
  const uint32_t lead = 0xf00u >> (tails + 1);  // in its low byte one bit for each byte to come
  *to++ = static_cast<char>(lead | character >> (6 * tails));
  for (int i = tails - 1; i >= 0; --i)
    *to++ = static_cast<char>(0x80 | (character >> (6 * i) & 0x3f));
  return to;
}

bool IsValidUtf8(std::string_view text) {
  const char* at = text.data();
  const char* end = at + text.size();
  while (at != end) {
    while (end - at >= 16 && IsAsciiBlock(at)) at += 16;
    while (at != end && static_cast<uint8_t>(*at) < 0x80) ++at;
    while (at != end && static_cast<uint8_t>(*at) >= 0x80) {
      const size_t size = Utf8CharacterSize({at, static_cast<size_t>(end - at)});
      if (size == 0) return false;
      at += size;
    }
  }
  return true;
}

std::string_view WithoutByteOrderMark(std::string_view text) {
  constexpr std::string_view kMark = "\xef\xbb\xbf";
  return text.substr(text.starts_with(kMark) ? kMark.size() : 0);
}

std::string RepairUtf8(std::string_view text) {
  std::string repaired;
  repaired.reserve(text.size() + 8);
  while (!text.empty()) {
    const size_t size = Utf8CharacterSize(text);
    if (size == 0) {
      repaired += "\xef\xbf\xbd";
    } else {
      repaired += text.substr(0, size);
    }
    text.remove_prefix(size == 0 ? 1 : size);
  }
  return repaired;
}

}  // namespace Kest
