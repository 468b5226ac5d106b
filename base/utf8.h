// UTF-8 as RFC 3629 has it: no overlong forms, no surrogates, nothing above U+10FFFF.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Kest {

// Bytes of the character at the front of `text`, 0 when it is malformed or cut.
// REQUIRES: `text` is not empty.
size_t Utf8CharacterSize(std::string_view text);

// Writes the character of that number, up to four bytes; returns what follows it.
// REQUIRES: at most U+10FFFF, and no surrogate.
char* WriteUtf8(uint32_t character, char* to);

bool IsValidUtf8(std::string_view text);

// The text after the byte-order mark that it may begin with.
std::string_view WithoutByteOrderMark(std::string_view text);

// The text with U+FFFD in the place of each byte that belongs to no character.
std::string RepairUtf8(std::string_view text);

}  // namespace Kest
