#include "host/world/input/yaml_scalar.h"

#include <algorithm>
#include <charconv>
#include <initializer_list>

namespace Kest::Host {
namespace {

bool Contains(std::initializer_list<std::string_view> constants, std::string_view text) {
  return std::find(constants.begin(), constants.end(), text) != constants.end();
}

// Reads all of `text` as a number of type T. `arguments` are the base of an integer, if not 10.
template <typename T, typename... Arguments>
std::errc ReadNumber(std::string_view text, T* value, Arguments... arguments) {
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, *value, arguments...);
  return rest == end ? error : std::errc::invalid_argument;
}

}  // namespace

std::optional<Json> ResolvePlainScalar(std::string_view text) {
  if (Contains({"", "~", "null", "Null", "NULL"}, text)) return Json(nullptr);
  if (Contains({"true", "True", "TRUE"}, text)) return Json(true);
  if (Contains({"false", "False", "FALSE"}, text)) return Json(false);
  uint64_t natural = 0;
  if (text.starts_with("0x") || text.starts_with("0o")) {
    const int base = text[1] == 'x' ? 16 : 8;
    return ReadNumber(text.substr(2), &natural, base) == std::errc() ? Json(natural) : Json(text);
  }
  const bool hasSign = text[0] == '-' || text[0] == '+';
  const std::string_view magnitude = text.substr(hasSign ? 1 : 0);
  if (Contains({".inf", ".Inf", ".INF", ".nan", ".NaN", ".NAN"}, magnitude)) return std::nullopt;
  if (magnitude.find_first_of(".0123456789") != 0) return Json(text);

  const std::string_view digits = text[0] == '+' ? magnitude : text;
  int64_t integer = 0;
  if (ReadNumber(magnitude, &natural) == std::errc() && text[0] != '-') return Json(natural);
  if (ReadNumber(digits, &integer) == std::errc()) return Json(integer);
  double number = 0;
  const std::errc error = ReadNumber(digits, &number);
  if (error == std::errc::result_out_of_range) return std::nullopt;
  return error == std::errc() ? Json(number) : Json(text);
}

}  // namespace Kest::Host
