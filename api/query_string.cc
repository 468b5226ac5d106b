#include "api/query_string.h"

#include <algorithm>
#include <cstdint>

namespace Kest {
namespace {

// 0 to 15, or -1 for any other character.
int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

}  // namespace

UrlParts SplitUrl(std::string_view url) {
  const size_t mark = url.find('?');
  if (mark == std::string_view::npos) return {url, {}};
  return {url.substr(0, mark), url.substr(mark + 1)};
}

std::string PercentDecode(std::string_view text, PlusSign plus) {
  std::string decoded;
  decoded.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '%' && i + 2 < text.size()) {
      const int high = HexDigit(text[i + 1]);
      const int low = HexDigit(text[i + 2]);
      if (high >= 0 && low >= 0) {
        decoded.push_back(static_cast<char>(high * 16 + low));
        i += 2;
        continue;
      }
    }
    decoded.push_back(text[i] == '+' && plus == PlusSign::kIsSpace ? ' ' : text[i]);
  }
  return decoded;
}

std::optional<QueryPair> TakeQueryPair(std::string_view* query) {
  query->remove_prefix(std::min(query->find_first_not_of('&'), query->size()));
  if (query->empty()) return std::nullopt;
  const std::string_view piece = query->substr(0, query->find('&'));
  query->remove_prefix(piece.size());
  const size_t split = std::min(piece.find('='), piece.size());
  const std::string_view value = piece.substr(std::min(split + 1, piece.size()));
  return QueryPair{PercentDecode(piece.substr(0, split), PlusSign::kIsSpace),
                   PercentDecode(value, PlusSign::kIsSpace)};
}

}  // namespace Kest
