// A hash of texts that is the same in every build: a table whose order can be seen from outside has
// the same order on 32 and on 64 bit, on Linux and on Windows. For ids of the platform, not for
// names that a stranger may choose.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace Kest {

struct StableHash {
  // Not noexcept: so the standard library keeps the hash beside the key instead of making it again.
  size_t operator()(std::string_view text) const {
    static_assert(std::endian::native == std::endian::little);
    auto hash = static_cast<uint32_t>(text.size());
    for (; text.size() >= sizeof(uint32_t); text.remove_prefix(sizeof(uint32_t))) {
      uint32_t word;
      std::memcpy(&word, text.data(), sizeof(word));
      hash = Mix(hash, word);
    }
    uint32_t word = 0;
    std::memcpy(&word, text.data(), text.size());
    hash = Mix(hash, word);
    hash = (hash ^ (hash >> 15)) * 0x85ebca77U;
    return hash ^ (hash >> 13);
  }

 private:
  static uint32_t Mix(uint32_t hash, uint32_t word) {
    return (std::rotl(hash, 5) ^ word) * 0x9e3779b1U;
  }
};

}  // namespace Kest
