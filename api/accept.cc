#include "api/accept.h"

#include <algorithm>
#include <optional>

#include "api/http_names.h"

namespace Kest {
namespace {

constexpr uint32_t kBest = 1000;

struct MediaRange {
  std::string_view type;
  uint32_t quality = kBest;  // in thousandths
};

// How one content type matches the media ranges seen so far. Unmatched, its quality is 0.
struct MediaRangeMatch {
  uint32_t quality = 0;
  uint32_t specificity = 0;

  // The most specific range decides; of equally specific ones the best quality.
  void Add(uint32_t rangeSpecificity, uint32_t rangeQuality) {
    if (rangeSpecificity < specificity) return;
    quality = rangeSpecificity > specificity ? rangeQuality : std::max(quality, rangeQuality);
    specificity = rangeSpecificity;
  }
};

std::string_view Trim(std::string_view text) {
  constexpr std::string_view kWhitespace = " \t";
  const size_t first = text.find_first_not_of(kWhitespace);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kWhitespace) - first + 1);
}

// Removes the part before the next unquoted `separator`, and the separator, from `*text`.
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

std::optional<MediaRange> ParseMediaRange(std::string_view text) {
  MediaRange range{TakePart(&text, ';')};
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
  constexpr uint32_t kAnyType = 1;  // by rising specificity
  constexpr uint32_t kAnySubtype = 2;
  constexpr uint32_t kExactType = 3;
  MediaRangeMatch json;
  MediaRangeMatch messagePack;
  while (!accept.empty()) {
    const std::optional<MediaRange> range = ParseMediaRange(TakePart(&accept, ','));
    if (!range) continue;
    if (range->type == "*/*") json.Add(kAnyType, range->quality);
    if (IsType(range->type, "application/*")) json.Add(kAnySubtype, range->quality);
    if (IsType(range->type, kContentTypeJson)) json.Add(kExactType, range->quality);
    if (IsType(range->type, kContentTypeMessagePack)) messagePack.Add(kExactType, range->quality);
  }
  if (messagePack.quality == 0 || messagePack.quality < json.quality) return ResultFormat::kJson;
  const bool isPreferred =
      messagePack.quality > json.quality || messagePack.specificity > json.specificity;
  return isPreferred ? ResultFormat::kMessagePack : ResultFormat::kJson;
}

}  // namespace Kest
