// Where writers put the bytes of a text before it takes them.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace Kest {

// Appends to a text through a block of its own, so that the text grows in large steps and nothing
// is allocated while it has capacity. Until Finish the text is incomplete.
// Threads: one.
class OutputBlock {
 public:
  static constexpr size_t kBytes = 8192;

  // `out` is borrowed until Finish.
  explicit OutputBlock(std::string* out) : out_(out), start_(out->size()) {}
  OutputBlock(const OutputBlock&) = delete;
  OutputBlock& operator=(const OutputBlock&) = delete;

  // Space for `bytes` more, at most kBytes. The caller fills it and calls FilledTo once, with its
  // end.
  char* Reserve(size_t bytes) {
    if (static_cast<size_t>(block_.data() + kBytes - next_) < bytes) Flush();
    return next_;
  }
  void FilledTo(char* end) { next_ = end; }

  // Any amount.
  void Append(std::string_view bytes) {
    Flush();
    out_->append(bytes);
  }

  // Completes the text, or takes back everything that was appended.
  void Finish(bool isKept) {
    if (isKept) return Flush();
    out_->resize(start_);
    next_ = block_.data();
  }

 private:
  void Flush() {
    out_->append(block_.data(), static_cast<size_t>(next_ - block_.data()));
    next_ = block_.data();
  }

  std::string* out_;
  size_t start_;  // size of *out_ at first
  std::array<char, kBytes> block_;
  char* next_ = block_.data();
};

}  // namespace Kest
