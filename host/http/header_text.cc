#include "host/http/header_text.h"

#include <algorithm>
#include <cctype>

namespace Kest::Host {

std::string_view TakeUpTo(char separator, std::string_view* text) {
  const size_t end = text->find(separator);
  const std::string_view head = text->substr(0, end);
  text->remove_prefix(end == std::string_view::npos ? text->size() : end + 1);
  return head;
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](unsigned char x, unsigned char y) {
    return std::tolower(x) == std::tolower(y);
  });
}

}  // namespace Kest::Host
