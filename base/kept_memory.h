// Memory for what is made once and kept to the end, such as the texts of a registration: a few
// large blocks in place of many small ones. Nothing of it is given back before all of it. Threads:
// no lock; the owner guards it.
#pragma once

#include <cstring>
#include <memory_resource>
#include <string_view>

namespace Kest {

class KeptMemory {
 public:
  // A copy that lives as long as this.
  std::string_view Copy(std::string_view text) {
    if (text.empty()) return "";
    auto* const copy = static_cast<char*>(blocks_.allocate(text.size(), 1));
    std::memcpy(copy, text.data(), text.size());
    return {copy, text.size()};
  }
  // For containers that only grow.
  std::pmr::memory_resource* Resource() { return &blocks_; }

 private:
  static constexpr size_t kFirstBlock = size_t{8} * 1024;

  std::pmr::monotonic_buffer_resource blocks_{kFirstBlock};
};

}  // namespace Kest
