// UTF-8 as RFC 3629 has it: no overlong forms, no surrogates, nothing above U+10FFFF.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace Kest {

// Bytes of the character at the front of `text`, 0 when it is malformed or cut.
// REQUIRES: `text` is not empty.
size_t Utf8CharacterSize(std::string_view text);

bool IsValidUtf8(std::string_view text);

// The eight bytes at `at`, for tests on all of them at once.
inline uint64_t LoadWord(const char* at) {
  uint64_t word;
  std::memcpy(&word, at, sizeof(word));
  return word;
}
inline constexpr uint64_t kEachByte = 0x0101010101010101ull;
inline constexpr uint64_t kHighBits = 0x80 * kEachByte;

}  // namespace Kest
