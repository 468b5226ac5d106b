// A JSON value that remembers where it stood in its text, so that a broken world file or request
// body can be answered with a place. Members keep their order.
//
// Nesting is bounded by the reader (kMaxJsonDepth), which bounds copying and destruction too.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace Kest::Host {

constexpr size_t kMaxJsonDepth = 64;

// Both count from 1, columns in characters. 0: the value was made by the program.
struct TextPosition {
  int32_t line = 0;
  int32_t column = 0;
};

class JsonValue {
 public:
  struct Member;
  using Array = std::vector<JsonValue>;
  using Object = std::vector<Member>;

  JsonValue();  // null
  JsonValue(const JsonValue& other);
  JsonValue(JsonValue&& other) noexcept;
  JsonValue& operator=(const JsonValue& other);
  JsonValue& operator=(JsonValue&& other) noexcept;
  ~JsonValue();

  template <std::same_as<bool> T>
  JsonValue(T value);
  template <std::signed_integral T>
  JsonValue(T value);
  template <std::unsigned_integral T>
  requires(!std::same_as<T, bool>) JsonValue(T value);
  JsonValue(double value);
  JsonValue(const char* value);
  JsonValue(std::string_view value);
  JsonValue(std::string value);
  JsonValue(Array value);
  JsonValue(Object value);

  bool IsNull() const { return std::holds_alternative<std::monostate>(value_); }
  const bool* AsBool() const { return std::get_if<bool>(&value_); }
  const double* AsDouble() const { return std::get_if<double>(&value_); }
  const std::string* AsText() const { return std::get_if<std::string>(&value_); }
  const Array* AsArray() const { return std::get_if<Array>(&value_); }
  Array* AsArray() { return std::get_if<Array>(&value_); }
  const Object* AsObject() const { return std::get_if<Object>(&value_); }
  Object* AsObject() { return std::get_if<Object>(&value_); }
  // A whole number, exactly; which of the two depends on how it was made, so ask for both.
  const int64_t* AsSigned() const { return std::get_if<int64_t>(&value_); }
  const uint64_t* AsUnsigned() const { return std::get_if<uint64_t>(&value_); }

  // The member of that name, or null for another name or another kind of value.
  const JsonValue* Find(std::string_view name) const;
  // What the value is, in words for a message: "a text", "a list", ...
  std::string_view KindName() const;

  TextPosition position() const { return position_; }
  void set_position(TextPosition position) { position_ = position; }

 private:
  std::variant<std::monostate, bool, int64_t, uint64_t, double, std::string, Array, Object> value_;
  TextPosition position_;
};

struct JsonValue::Member {
  std::string name;
  JsonValue value;
  TextPosition position = {};  // of the name
};

template <std::same_as<bool> T>
JsonValue::JsonValue(T value) : value_(value) {}
template <std::signed_integral T>
JsonValue::JsonValue(T value) : value_(static_cast<int64_t>(value)) {}
template <std::unsigned_integral T>
requires(!std::same_as<T, bool>) JsonValue::JsonValue(T value)
    : value_(static_cast<uint64_t>(value)) {}

// Writes `value` without blanks. Texts are taken to be UTF-8; numbers read back exactly.
std::string WriteJson(const JsonValue& value);

// `text` as a JSON text, with its quotes.
std::string QuoteJson(std::string_view text);

}  // namespace Kest::Host
