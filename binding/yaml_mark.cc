#include "binding/yaml_mark.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace Kest {
namespace {

constexpr std::string_view kCarriageReturn = "\r";
constexpr std::string_view kLineFeed = "\n";
constexpr std::array<std::string_view, 5> kLineBreaks = {kCarriageReturn, kLineFeed, "\xc2\x85",
                                                         "\xe2\x80\xa8", "\xe2\x80\xa9"};

bool BeginsLine(std::string_view text, size_t offset) {
  const std::string_view before = text.substr(0, offset);
  return before.empty() ||
         std::any_of(kLineBreaks.begin(), kLineBreaks.end(),
                     [before](std::string_view lineBreak) { return before.ends_with(lineBreak); });
}

// Bytes of the line break at the front of `text`, or 0.
size_t LineBreakSize(std::string_view text) {
  for (const std::string_view lineBreak : kLineBreaks) {
    if (!text.starts_with(lineBreak)) continue;
    const bool isPair = lineBreak == kCarriageReturn && text.substr(1).starts_with(kLineFeed);
    return isPair ? 2 : lineBreak.size();
  }
  return 0;
}

bool BeginsCharacter(char c) {
  return (static_cast<uint8_t>(c) & 0xc0) != 0x80;
}

}  // namespace

YamlMark MarkAt(std::string_view text, size_t offset) {
  YamlMark mark;
  size_t at = 0;
  while (at < offset) {
    const size_t size = LineBreakSize(text.substr(at));
    if (size > 0) {
      ++mark.line;
      mark.column = 0;
    } else if (BeginsCharacter(text[at])) {
      ++mark.column;
    }
    at += std::max<size_t>(size, 1);
  }
  return mark;
}

std::optional<size_t> FindDirectiveBeyond(std::string_view text, size_t most) {
  size_t found = 0;
  for (size_t at = text.find('%'); at != std::string_view::npos; at = text.find('%', at + 1)) {
    if (BeginsLine(text, at) && found++ == most) return at;
  }
  return std::nullopt;
}

}  // namespace Kest
