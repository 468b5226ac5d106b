// A text that grows inside a buffer of fixed size: what does not fit is cut off.
#pragma once

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "base/word_scan.h"

namespace Kest {

// FixedBuffer writes into memory it borrows; it never allocates and adds no NUL.
class FixedBuffer {
 public:
  FixedBuffer(char* buffer, size_t capacity) : buffer_(buffer), capacity_(capacity) {}

  void Append(char character) {
    if (size_ < capacity_) buffer_[size_++] = character;
  }
  void Append(std::string_view text) {
    const size_t count = std::min(text.size(), capacity_ - size_);
    CopyBytes(buffer_ + size_, text.data(), count);
    size_ += count;
  }
  // The same for a size that the compiler knows.
  template <size_t size>
  void Append(const std::array<char, size>& text) {
    if (capacity_ - size_ < size) return Append(std::string_view(text.data(), size));
    std::memcpy(buffer_ + size_, text.data(), size);
    size_ += size;
  }
  // Appends `text` up to the first `stop`, or all of it. Returns how long that stretch is, what did
  // not fit included. Made for stretches of a few bytes.
  size_t AppendUntil(char stop, std::string_view text) {
    const size_t length = FindByte(text, stop);
    Append(text.substr(0, length));
    return length;
  }
  void AppendDecimal(uint64_t number) {
    constexpr size_t kDigits = 20;
    if (number < 10) return Append(static_cast<char>('0' + number));
    char digits[kDigits];
    char* const start = capacity_ - size_ >= kDigits ? buffer_ + size_ : digits;
    const char* const end = std::to_chars(start, start + kDigits, number).ptr;
    const size_t size = static_cast<size_t>(end - start);
    if (start == digits) return Append(std::string_view(digits, size));
    size_ += size;
  }
  void AppendRepeated(char character, size_t times) {
    const size_t count = std::min(times, capacity_ - size_);
    if (count != 0) std::memset(buffer_ + size_, character, count);
    size_ += count;
  }

  bool IsFull() const { return size_ == capacity_; }
  std::string_view View() const { return {buffer_, size_}; }

 private:
  char* buffer_;
  size_t capacity_;
  size_t size_ = 0;
};

}  // namespace Kest
