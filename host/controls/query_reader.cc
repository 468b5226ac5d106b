#include "host/controls/query_reader.h"

#include "host/json/json_text.h"

namespace Kest::Host {

std::optional<uint64_t> QueryReader::Number(std::string_view name, uint64_t least, uint64_t most) {
  const auto text = Text(name);
  if (!text) return std::nullopt;
  const auto number = ParseNumber(*text);
  if (number && *number >= least && *number <= most) return number;
  std::string rule = "must be an integer from ";
  Fail(name, rule.append(std::to_string(least)).append(" to ").append(std::to_string(most)), *text);
  return std::nullopt;
}

std::optional<bool> QueryReader::Flag(std::string_view name) {
  const auto text = Text(name);
  if (!text) return std::nullopt;
  if (*text != "true" && *text != "false") Fail(name, "must be true or false", *text);
  return *text == "true";
}

void QueryReader::Fail(std::string_view name, std::string_view rule, std::string_view found) {
  if (failure_) return;
  std::string text(name);
  text.append(" ").append(rule).append(", found ").append(JsonString(found)).append(".");
  failure_ = Failure{std::move(text), 400};
}

}  // namespace Kest::Host
