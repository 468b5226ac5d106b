// Splits a URL into path and query, a query into pairs, and decodes percent escapes.
// None of these can fail. Decoded strings may hold any byte.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Kest {

struct UrlParts {
  std::string_view path;   // up to the first "?"
  std::string_view query;  // after it; empty without one
};
UrlParts SplitUrl(std::string_view url);

enum class PlusSign { kIsPlus, kIsSpace };

// Replaces each "%XX" by its byte, once; a broken escape stays as it is.
std::string PercentDecode(std::string_view text, PlusSign plus);

struct QueryPair {
  std::string name;
  std::string value;  // empty too when the pair had no "="
};

// Removes the next pair from `*query`: all up to the next "&", split at its first "=" and then
// decoded ("+" is a space). Empty pieces are skipped; none when nothing is left.
std::optional<QueryPair> TakeQueryPair(std::string_view* query);

}  // namespace Kest
