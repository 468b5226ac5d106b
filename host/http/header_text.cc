#include "host/http/header_text.h"

#include <algorithm>
#include <cctype>

namespace Kest::Host {

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](unsigned char x, unsigned char y) {
    return std::tolower(x) == std::tolower(y);
  });
}

}  // namespace Kest::Host
