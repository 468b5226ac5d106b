// Eight bytes at a time: loads, and tests on all of them at once. The first byte is the lowest.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace Kest {

inline constexpr uint64_t kEachByte = 0x0101010101010101ull;
inline constexpr uint64_t kHighBits = 0x80 * kEachByte;

inline uint64_t LoadWord(const char* at) {
  uint64_t word;
  std::memcpy(&word, at, sizeof(word));
  return word;
}

inline uint32_t LoadHalfWord(const char* at) {
  uint32_t word;
  std::memcpy(&word, at, sizeof(word));
  return word;
}

// The next 1 to 7 bytes, then spaces.
inline uint64_t LoadPartialWord(const char* at, size_t size) {
  uint64_t word;
  if (size >= 4) {
    word = LoadHalfWord(at) | uint64_t{LoadHalfWord(at + size - 4)} << (8 * (size - 4));
  } else {
    const auto byte = [at](size_t i) { return uint64_t{static_cast<uint8_t>(at[i])} << (8 * i); };
    word = byte(0) | byte(size / 2) | byte(size - 1);
  }
  return word | (kEachByte * ' ') << (8 * size);
}

// Marks the bytes that do not stand for themselves between the quotes of a JSON string: all but
// printable ASCII, '"' and '\\'. 0 when there is none; otherwise the lowest mark is exact, what is
// above it need not be (the subtractions borrow from there).
inline uint64_t EscapeMask(uint64_t word) {
  const uint64_t quotes = (word ^ (kEachByte * '"')) - kEachByte;
  const uint64_t slashes = (word ^ (kEachByte * '\\')) - kEachByte;
  const uint64_t controls = word - kEachByte * 0x20;
  return (quotes | slashes | controls | word) & kHighBits;
}
// The place of the lowest mark. REQUIRES: there is one.
inline size_t IndexOfFirstSetByte(uint64_t marks) {
  return static_cast<size_t>(std::countr_zero(marks)) / 8;
}

#if defined(__SSE2__)
inline constexpr size_t kPlainBlock = 32;

// Copies 16 bytes, and marks those that do not stand for themselves, the first in the lowest bit.
inline uint64_t CopyMarked(const char* from, char* to) {
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), bytes);
  const __m128i quotes = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('"'));
  const __m128i slashes = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\\'));
  const __m128i others = _mm_cmplt_epi8(bytes, _mm_set1_epi8(0x20));  // non-ASCII ones are negative
  const __m128i marks = _mm_or_si128(_mm_or_si128(quotes, slashes), others);
  return static_cast<uint32_t>(_mm_movemask_epi8(marks));
}

// Copies kPlainBlock bytes. Returns how many at their front stand for themselves, in the sense of
// EscapeMask. Most strings of a document fit in one such step.
inline size_t CopyPlainBlock(const char* from, char* to) {
  const uint64_t marks = CopyMarked(from, to) | CopyMarked(from + 16, to + 16) << 16;
  return static_cast<size_t>(std::countr_zero(marks | uint64_t{1} << kPlainBlock));
}
#else
inline constexpr size_t kPlainBlock = 8;

inline size_t CopyPlainBlock(const char* from, char* to) {
  const uint64_t word = LoadWord(from);
  std::memcpy(to, &word, sizeof(word));
  const uint64_t marks = EscapeMask(word);
  return marks != 0 ? IndexOfFirstSetByte(marks) : kPlainBlock;
}
#endif

// As memcmp == 0, for the short texts that names are.
inline bool EqualBytes(const char* left, const char* right, size_t size) {
  if (size >= 8) {
    for (size_t i = 0; i + 8 < size; i += 8) {
      if (LoadWord(left + i) != LoadWord(right + i)) return false;
    }
    return LoadWord(left + size - 8) == LoadWord(right + size - 8);
  }
  if (size >= 4) {
    return LoadHalfWord(left) == LoadHalfWord(right) &&
           LoadHalfWord(left + size - 4) == LoadHalfWord(right + size - 4);
  }
  for (size_t i = 0; i < size; ++i) {
    if (left[i] != right[i]) return false;
  }
  return true;
}

}  // namespace Kest
