// A text after which nothing can be read.
#pragma once

#include <memory>
#include <string_view>

namespace Kest::Fuzz {

// A copy of a text that ends where readable memory does, so that reading beyond it ends the
// program. Where that cannot be had, the copy is a heap block of its size, for AddressSanitizer.
// Threads: one, and one object at a time.
class GuardedText {
 public:
  explicit GuardedText(std::string_view text);
  std::string_view View() const { return view_; }

 private:
  std::unique_ptr<char[]> block_;
  std::string_view view_;
};

}  // namespace Kest::Fuzz
