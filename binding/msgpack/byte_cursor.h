// Numbers in network byte order: as memory, and through a cursor that never leaves its bytes.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <type_traits>

namespace Kest {

template <typename Unsigned>
constexpr Unsigned SwapToBigEndian(Unsigned value) {
  static_assert(std::is_unsigned_v<Unsigned>);
  static_assert(std::endian::native == std::endian::little);
  if constexpr (sizeof(Unsigned) == 8) return __builtin_bswap64(value);
  if constexpr (sizeof(Unsigned) == 4) return __builtin_bswap32(value);
  if constexpr (sizeof(Unsigned) == 2) return __builtin_bswap16(value);
  return value;
}

template <typename Unsigned>
void StoreBigEndian(Unsigned value, char* to) {
  value = SwapToBigEndian(value);
  std::memcpy(to, &value, sizeof(value));
}

// Any number; a negative or floating one is read by its bits.
template <typename Number>
Number LoadBigEndian(const uint8_t* from) {
  using Bits = std::conditional_t<
      sizeof(Number) == 8, uint64_t,
      std::conditional_t<sizeof(Number) == 4, uint32_t,
                         std::conditional_t<sizeof(Number) == 2, uint16_t, uint8_t>>>;
  Bits bits;
  std::memcpy(&bits, from, sizeof(bits));
  return std::bit_cast<Number>(SwapToBigEndian(bits));
}

// A place in bytes that are read from front to back.
// Lifetime: borrows the bytes.
class ByteCursor {
 public:
  explicit ByteCursor(std::span<const uint8_t> bytes)
      : next_(bytes.data()), end_(bytes.data() + bytes.size()) {}

  const uint8_t* Next() const { return next_; }
  bool Has(size_t count) const { return count <= static_cast<size_t>(end_ - next_); }

  // The next bytes, and goes past them. REQUIRES: Has(count).
  const uint8_t* Take(size_t count) {
    const uint8_t* taken = next_;
    next_ += count;
    return taken;
  }
  // The same as a number. REQUIRES: Has(sizeof(Number)).
  template <typename Number>
  Number Take() {
    return LoadBigEndian<Number>(Take(sizeof(Number)));
  }

 private:
  const uint8_t* next_;
  const uint8_t* end_;
};

}  // namespace Kest
