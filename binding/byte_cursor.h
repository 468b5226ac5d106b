// Numbers in network byte order: as memory, and behind a cursor that never leaves its bytes.
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

// Reads bytes from front to back. A read that finds too few answers false and moves nothing.
// Lifetime: borrows the bytes.
class ByteCursor {
 public:
  explicit ByteCursor(std::span<const uint8_t> bytes) : bytes_(bytes) {}

  size_t Position() const { return position_; }

  template <typename Unsigned>
  bool Read(Unsigned* value) {
    if (sizeof(Unsigned) > bytes_.size() - position_) return false;
    std::memcpy(value, bytes_.data() + position_, sizeof(Unsigned));
    *value = SwapToBigEndian(*value);
    position_ += sizeof(Unsigned);
    return true;
  }

  bool ReadBytes(uint64_t count, std::span<const uint8_t>* bytes) {
    if (count > bytes_.size() - position_) return false;
    *bytes = bytes_.subspan(position_, static_cast<size_t>(count));
    position_ += bytes->size();
    return true;
  }

 private:
  std::span<const uint8_t> bytes_;
  size_t position_ = 0;
};

}  // namespace Kest
