// Eight bytes at a time: loads, and tests on all of them at once. The first byte is the lowest.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

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

// Copies eight bytes. Returns how many at their front have no mark.
inline size_t CopyPlainWord(const char* from, char* to) {
  const uint64_t word = LoadWord(from);
  std::memcpy(to, &word, sizeof(word));
  const uint64_t marks = EscapeMask(word);
  return marks != 0 ? IndexOfFirstSetByte(marks) : sizeof(word);
}

#if defined(__SSE2__)
inline constexpr size_t kPlainBlock = 32;

// Marks quotes, backslashes, control characters and all that is not ASCII.
inline __m128i MarkEscapes(__m128i bytes) {
  const __m128i quotes = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('"'));
  const __m128i slashes = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\\'));
  const __m128i others = _mm_cmplt_epi8(bytes, _mm_set1_epi8(0x20));  // high ones are negative
  return _mm_or_si128(_mm_or_si128(quotes, slashes), others);
}
inline uint32_t EscapeBits(__m128i bytes) {
  return static_cast<uint32_t>(_mm_movemask_epi8(MarkEscapes(bytes)));
}
inline __m128i LoadBlock(const char* at) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
}
inline void StoreBlock(__m128i bytes, char* at) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(at), bytes);
}

// One bit for each of kPlainBlock bytes, the first in the lowest bit.
struct PlainBlock {
  __m128i low;
  __m128i high;

  static PlainBlock Load(const char* at) {
    const auto* words = reinterpret_cast<const __m128i*>(at);
    return {_mm_loadu_si128(words), _mm_loadu_si128(words + 1)};
  }
  void Store(char* at) const {
    auto* words = reinterpret_cast<__m128i*>(at);
    _mm_storeu_si128(words, low);
    _mm_storeu_si128(words + 1, high);
  }
  template <typename Test>
  uint32_t Mask(Test test) const {
    return static_cast<uint32_t>(_mm_movemask_epi8(test(low))) |
           static_cast<uint32_t>(_mm_movemask_epi8(test(high))) << 16;
  }
  uint32_t Marks() const { return Mask(MarkEscapes); }
  // The bytes of well-formed characters of two bytes.
  uint32_t Pairs() const {
    const uint32_t leads = Mask([](__m128i bytes) {
      return _mm_and_si128(_mm_cmpgt_epi8(bytes, _mm_set1_epi8(static_cast<char>(0xc1))),
                           _mm_cmplt_epi8(bytes, _mm_set1_epi8(static_cast<char>(0xe0))));
    });
    const uint32_t tails = Mask([](__m128i bytes) {
      return _mm_cmplt_epi8(bytes, _mm_set1_epi8(static_cast<char>(0xc0)));
    });
    const uint32_t paired = leads & tails >> 1;
    return paired | paired << 1;
  }
};

// Copies kPlainBlock bytes, the first `known` of which are known to be plain. Returns how many at
// their front are: stand for themselves between the quotes of a JSON string. What is after them may
// do so, too, when it is not ASCII. Most strings of a document fit in one such step.
inline size_t CopyPlainBlock(const char* from, char* to, size_t known = 0) {
  const PlainBlock block = PlainBlock::Load(from);
  block.Store(to);
  uint32_t marks = block.Marks() >> known << known;
  const auto plain = static_cast<size_t>(std::countr_zero(marks));
  if (plain == kPlainBlock || static_cast<uint8_t>(from[plain]) < 0x80) return plain;
  marks &= ~block.Pairs();
  return static_cast<size_t>(std::countr_zero(marks));
}
#else
inline constexpr size_t kPlainBlock = 8;

inline size_t CopyPlainBlock(const char* from, char* to, size_t = 0) {
  return CopyPlainWord(from, to);
}
#endif

// The same for 8 to 31 bytes: the first and the last ones, which may overlap.
inline size_t CopyPlainEnds(const char* from, size_t size, char* to) {
#if defined(__SSE2__)
  uint32_t marks;
  if (size >= 16) {
    const __m128i first = LoadBlock(from);
    const __m128i last = LoadBlock(from + size - 16);
    StoreBlock(first, to);
    StoreBlock(last, to + size - 16);
    marks = EscapeBits(first) | EscapeBits(last) << (size - 16);
  } else {
    const uint64_t first = LoadWord(from);
    const uint64_t last = LoadWord(from + size - 8);
    std::memcpy(to, &first, 8);
    std::memcpy(to + size - 8, &last, 8);
    const uint32_t both =
        EscapeBits(_mm_set_epi64x(static_cast<long long>(last), static_cast<long long>(first)));
    marks = (both & 0xff) | both >> 8 << (size - 8);
  }
  return marks != 0 ? static_cast<size_t>(std::countr_zero(marks)) : size;
#else
  size_t done = 0;
  for (; done + 8 <= size; done += 8) {
    const size_t plain = CopyPlainWord(from + done, to + done);
    if (plain < 8) return done + plain;
  }
  const size_t last = size - 8;
  const uint64_t word = LoadWord(from + last);
  std::memcpy(to + last, &word, sizeof(word));
  const uint64_t marks = EscapeMask(word);
  return marks != 0 ? last + IndexOfFirstSetByte(marks) : size;
#endif
}

// The same for any number of bytes. Up to seven bytes of no meaning are written after them.
inline size_t CopyPlain(const char* from, size_t size, char* to) {
  if (size < 8) {
    if (size == 0) return 0;
    const uint64_t word = LoadPartialWord(from, size);
    std::memcpy(to, &word, sizeof(word));
    const uint64_t marks = EscapeMask(word);
    return marks != 0 ? IndexOfFirstSetByte(marks) : size;
  }
  if (size < 32) return CopyPlainEnds(from, size, to);
  size_t done = 0;
  for (; done + kPlainBlock <= size; done += kPlainBlock) {
    const size_t plain = CopyPlainBlock(from + done, to + done);
    if (plain < kPlainBlock) return done + plain;
  }
  if (done == size) return size;
  // The last block, of which a part was copied before.
  const size_t last = size - kPlainBlock;
  return last + CopyPlainBlock(from + last, to + last, done - last);
}

// The same for up to 16 bytes, of which 16 can be read and 16 are written.
inline constexpr size_t kShortText = 16;
inline size_t CopyPlainShort(const char* from, size_t size, char* to) {
#if defined(__SSE2__)
  const __m128i bytes = LoadBlock(from);
  StoreBlock(bytes, to);
  const uint32_t marks = EscapeBits(bytes) | 1u << size;
  return static_cast<size_t>(std::countr_zero(marks));
#else
  return CopyPlain(from, size, to);
#endif
}

// Whether two names of one size begin alike: compares kNameStart bytes, of which those past `size`
// do not count. More than that do not count either.
inline constexpr size_t kNameStart = 16;
inline bool StartsAlike(const char* left, const char* right, size_t size) {
#if defined(__SSE2__)
  const __m128i equal = _mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(left)),
                                       _mm_loadu_si128(reinterpret_cast<const __m128i*>(right)));
  const auto mask = static_cast<uint32_t>(_mm_movemask_epi8(equal));
  return std::countr_one(mask) >= static_cast<int>(size < kNameStart ? size : kNameStart);
#else
  return std::memcmp(left, right, size < kNameStart ? size : kNameStart) == 0;
#endif
}

// How many decimal digits a word begins with.
inline size_t CountDigits(uint64_t word) {
  const uint64_t digits = word ^ (kEachByte * '0');
  const uint64_t others = ((digits + kEachByte * 0x76) | digits) & kHighBits;
  return others != 0 ? IndexOfFirstSetByte(others) : sizeof(word);
}
// The number that these digits are: adds up neighbours, then pairs, then fours.
// REQUIRES: `count` is CountDigits of the word, and above 0.
inline uint64_t DigitsValue(uint64_t word, size_t count) {
  word = (word ^ (kEachByte * '0')) << (64 - 8 * count);
  word = (word * 10 + (word >> 8)) & 0x00ff00ff00ff00ffull;
  word = (word * 100 + (word >> 16)) & 0x0000ffff0000ffffull;
  return (word * 10000 + (word >> 32)) & 0xffffffffull;
}

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

// As memcpy, for sizes that are small most of the time: the first and the last bytes, which may
// overlap.
inline void CopyBytes(char* to, const char* from, size_t size) {
  if (size > 16) {
    std::memcpy(to, from, size);
  } else if (size >= 8) {
    std::memcpy(to, from, 8);
    std::memcpy(to + size - 8, from + size - 8, 8);
  } else if (size >= 4) {
    std::memcpy(to, from, 4);
    std::memcpy(to + size - 4, from + size - 4, 4);
  } else {
    for (size_t i = 0; i < size; ++i) to[i] = from[i];
  }
}

// The place of the first `byte`, or the size of the text; made for places near its start.
inline size_t FindByte(std::string_view text, char byte) {
  size_t i = 0;
  for (; i + 8 <= text.size(); i += 8) {
    const uint64_t rest = LoadWord(text.data() + i) ^ (kEachByte * static_cast<uint8_t>(byte));
    // The lowest mark is exact: the subtraction borrows upwards only.
    const uint64_t zeros = (rest - kEachByte) & ~rest & kHighBits;
    if (zeros != 0) return i + IndexOfFirstSetByte(zeros);
  }
  while (i < text.size() && text[i] != byte) ++i;
  return i;
}

}  // namespace Kest
