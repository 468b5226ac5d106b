#include "api/accept.h"

#include <algorithm>
#include <optional>

#include "api/http_names.h"

namespace Kest {
namespace {

constexpr uint32_t kBest = 1000;

// A media range, and how much it is wanted: in thousandths.
struct Range {
  std::string_view type;
  uint32_t quality = kBest;
};

// The quality of a type that no range names.
struct MediaRangeMatch {
  uint32_t quality = 0;
  uint32_t closeness = 0;  // of the range it comes from

  // The closest range counts, and of several the best.
  void Take(uint32_t rangeCloseness, uint32_t rangeQuality) {
    if (rangeCloseness < closeness) return;
    quality = rangeCloseness > closeness ? rangeQuality : std::max(quality, rangeQuality);
    closeness = rangeCloseness;
  }
};

std::string_view Trim(std::string_view text) {
  constexpr std::string_view kBlanks = " \t";
  const size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// Takes what stands in front of the next `separator` outside of quotes, and it, off `*text`.
std::string_view TakePart(std::string_view* text, char separator) {
  bool isQuoted = false;
  size_t end = 0;
  for (; end < text->size() && (isQuoted || (*text)[end] != separator); ++end) {
    if ((*text)[end] == '"') isQuoted = !isQuoted;
    if ((*text)[end] == '\\' && isQuoted) ++end;
  }
  end = std::min(end, text->size());
  const std::string_view part = text->substr(0, end);
  text->remove_prefix(std::min(end + 1, text->size()));
  return Trim(part);
}

bool IsType(std::string_view type, std::string_view name) {
  return type.size() == name.size() && HasContentType(type, name);
}

// "0.25" as 250.
std::optional<uint32_t> ParseQuality(std::string_view text) {
  if (text.empty() || text.size() > 5 || text[0] < '0' || text[0] > '1') return std::nullopt;
  if (text.size() > 1 && text[1] != '.') return std::nullopt;
  uint32_t quality = text[0] == '1' ? kBest : 0;
  uint32_t unit = kBest / 10;
  for (size_t i = 2; i < text.size(); ++i, unit /= 10) {
    if (text[i] < '0' || text[i] > '9') return std::nullopt;
    quality += static_cast<uint32_t>(text[i] - '0') * unit;
  }
  return quality <= kBest ? std::optional(quality) : std::nullopt;
}

std::optional<Range> ParseRange(std::string_view text) {
  Range range{TakePart(&text, ';')};
  while (!text.empty()) {
    std::string_view value = TakePart(&text, ';');
    if (!IsType(TakePart(&value, '='), "q")) continue;
    const std::optional<uint32_t> quality = ParseQuality(Trim(value));
    if (!quality) return std::nullopt;
    range.quality = *quality;
  }
  return range;
}

}  // namespace

ResultFormat ChooseResultFormat(std::string_view accept) {
  constexpr uint32_t kAnything = 1;
  constexpr uint32_t kAnyApplication = 2;
  constexpr uint32_t kByName = 3;
  MediaRangeMatch json;
  MediaRangeMatch messagePack;
  while (!accept.empty()) {
    const std::optional<Range> range = ParseRange(TakePart(&accept, ','));
    if (!range) continue;
    if (range->type == "*/*") json.Take(kAnything, range->quality);
    if (IsType(range->type, "application/*")) json.Take(kAnyApplication, range->quality);
    if (IsType(range->type, kContentTypeJson)) json.Take(kByName, range->quality);
    if (IsType(range->type, kContentTypeMessagePack)) messagePack.Take(kByName, range->quality);
  }
  if (messagePack.quality == 0 || messagePack.quality < json.quality) return ResultFormat::kJson;
  const bool isPreferred =
      messagePack.quality > json.quality || messagePack.closeness > json.closeness;
  return isPreferred ? ResultFormat::kMessagePack : ResultFormat::kJson;
}

}  // namespace Kest
