// A text that grows inside a buffer of fixed size: what does not fit is cut off.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

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
    if (count != 0) std::memcpy(buffer_ + size_, text.data(), count);
    size_ += count;
  }
  // Appends `text` up to the first `stop`, or all of it. Returns how long that stretch is, what did
  // not fit included. Made for stretches of a few bytes.
  size_t AppendUntil(char stop, std::string_view text) {
    char* const target = buffer_ + size_;
    const size_t space = capacity_ - size_;
    size_t length = 0;
    for (; length < text.size() && text[length] != stop; ++length) {
      if (length < space) target[length] = text[length];
    }
    size_ += std::min(length, space);
    return length;
  }
  void AppendRepeated(char character, size_t times) {
    const size_t count = std::min(times, capacity_ - size_);
    if (count != 0) std::memset(buffer_ + size_, character, count);
    size_ += count;
  }

  // Memory for `size` more bytes, or null when there is less; Advance says how many were written.
  char* Reserve(size_t size) { return capacity_ - size_ >= size ? buffer_ + size_ : nullptr; }
  void Advance(size_t written) { size_ += written; }

  bool IsFull() const { return size_ == capacity_; }
  std::string_view View() const { return {buffer_, size_}; }

 private:
  char* buffer_;
  size_t capacity_;
  size_t size_ = 0;
};

}  // namespace Kest
