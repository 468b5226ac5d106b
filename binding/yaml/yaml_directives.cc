#include "binding/yaml/yaml_directives.h"

#include <algorithm>
#include <array>

namespace Kest {
namespace {

constexpr std::array<std::string_view, 6> kLineBreaks = {
    "\r\n", "\r", "\n", "\xc2\x85", "\xe2\x80\xa8", "\xe2\x80\xa9"};

bool BeginsLine(std::string_view text, size_t offset) {
  const std::string_view before = text.substr(0, offset);
  return before.empty() ||
         std::any_of(kLineBreaks.begin(), kLineBreaks.end(),
                     [before](std::string_view lineBreak) { return before.ends_with(lineBreak); });
}

size_t CountLineBreaks(std::string_view text) {
  size_t count = 0;
  while (!text.empty()) {
    const auto found =
        std::find_if(kLineBreaks.begin(), kLineBreaks.end(),
                     [text](std::string_view lineBreak) { return text.starts_with(lineBreak); });
    if (found != kLineBreaks.end()) ++count;
    text.remove_prefix(found != kLineBreaks.end() ? found->size() : 1);
  }
  return count;
}

}  // namespace

std::optional<size_t> FindDirectiveBeyond(std::string_view text, size_t most) {
  size_t found = 0;
  for (size_t at = text.find('%'); at != std::string_view::npos; at = text.find('%', at + 1)) {
    if (BeginsLine(text, at) && found++ == most) return CountLineBreaks(text.substr(0, at));
  }
  return std::nullopt;
}

}  // namespace Kest
