#include "binding/tree/seeded_hash.h"

#include <bit>
#include <cstring>

#include "base/platform.h"

namespace Kest {
namespace {

struct HashKey {
  uint64_t low = 0x736563726574206bull;
  uint64_t high = 0x6579206f66206f77ull;
};

HashKey DrawKey() {
  HashKey key;
  UuidBytes bytes;
  if (CreateUuid(&bytes)) std::memcpy(&key, bytes.data(), sizeof(key));
  return key;
}

struct SipState {
  uint64_t a, b, c, d;

  void Round() {
    a += b;
    c += d;
    b = std::rotl(b, 13) ^ a;
    d = std::rotl(d, 16) ^ c;
    a = std::rotl(a, 32) + d;
    c += b;
    d = std::rotl(d, 21) ^ a;
    b = std::rotl(b, 17) ^ c;
    c = std::rotl(c, 32);
  }
};

}  // namespace

uint32_t SeededHash(std::string_view text) {
  static const HashKey key = DrawKey();
  SipState state = {key.low ^ 0x736f6d6570736575ull, key.high ^ 0x646f72616e646f6dull,
                    key.low ^ 0x6c7967656e657261ull, key.high ^ 0x7465646279746573ull};
  const char* at = text.data();
  size_t left = text.size();
  for (; left >= 8; at += 8, left -= 8) {
    uint64_t word;
    std::memcpy(&word, at, 8);
    state.d ^= word;
    state.Round();
    state.a ^= word;
  }
  uint64_t word = static_cast<uint64_t>(text.size()) << 56;
  for (size_t i = 0; i < left; ++i) word |= uint64_t{static_cast<uint8_t>(at[i])} << (8 * i);
  state.d ^= word;
  state.Round();
  state.a ^= word;
  state.c ^= 0xff;
  for (int i = 0; i < 3; ++i) state.Round();
  return static_cast<uint32_t>(state.a ^ state.b ^ state.c ^ state.d);
}

}  // namespace Kest
