// A text that several may hold: the memory lives as long as one of them. Copies share it and
// allocate nothing. Threads: any; the text does not change while it is shared.
#pragma once

#include <memory>
#include <string_view>

namespace Kest {

struct SharedText {
  std::shared_ptr<const void> owner;
  std::string_view text;
};

}  // namespace Kest
