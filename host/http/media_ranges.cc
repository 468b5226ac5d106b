#include "host/http/media_ranges.h"

#include <algorithm>

#include "base/ascii.h"
#include "host/url/url_text.h"

namespace Kest::Host {
namespace {

constexpr int kFullQuality = 1000;

// Of "q=0.25" 250; of other parameters and of what is no number the full quality.
int QualityOf(std::string_view parameter) {
  if (!EqualIgnoringCase(parameter.substr(0, 2), "q=")) return kFullQuality;
  int quality = 0;
  int digit = kFullQuality;
  for (const char c : parameter.substr(2)) {
    if (c == '.') continue;
    if (c < '0' || c > '9') return kFullQuality;
    quality += (c - '0') * digit;
    digit /= 10;
  }
  return std::min(quality, kFullQuality);
}

// 0 when the list does not name the type.
int QualityOf(std::string_view accept, std::string_view type) {
  while (!accept.empty()) {
    std::string_view range = TakeTrimmedUpTo(',', &accept);
    if (!EqualIgnoringCase(TakeTrimmedUpTo(';', &range), type)) continue;
    int quality = kFullQuality;
    while (!range.empty()) quality = std::min(quality, QualityOf(TakeTrimmedUpTo(';', &range)));
    return quality;
  }
  return 0;
}

}  // namespace

bool Prefers(std::string_view accept, std::string_view type, std::string_view other) {
  const int quality = QualityOf(accept, type);
  return quality > 0 && quality >= QualityOf(accept, other);
}

}  // namespace Kest::Host
