#include "host/record/token_cut.h"

#include <algorithm>
#include <cstddef>

namespace Kest::Host {
namespace {

constexpr std::string_view kTokenPath = "/tav-inventory/v1/signedInventory";
constexpr std::string_view kCut = "(masked)";
constexpr size_t kSegments = 3;

// Of base64 in both alphabets, and a slash as a JSON string may have it.
bool IsOfSegment(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         std::string_view("+/=-_\\").find(c) != std::string_view::npos;
}

}  // namespace

bool HasTokens(std::string_view url) {
  return url.substr(0, url.find('?')) == kTokenPath;
}

std::string WithoutSignatures(std::string_view text) {
  std::string cut;
  size_t segment = 1;  // of the token that may be here
  bool isEmpty = true;
  for (const char c : text) {
    if (IsOfSegment(c)) {
      if (segment < kSegments) cut += c;
      if (segment == kSegments && isEmpty) cut += kCut;
      isEmpty = false;
      continue;
    }
    segment = c == '.' && (segment > 1 || !isEmpty) ? segment + 1 : 1;
    isEmpty = true;
    if (segment <= kSegments) cut += c;
  }
  return cut;
}

}  // namespace Kest::Host
