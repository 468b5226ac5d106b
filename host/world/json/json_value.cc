#include "host/world/json/json_value.h"

#include <array>
#include <charconv>

namespace Kest::Host {
namespace {

constexpr std::string_view kHexDigits = "0123456789abcdef";

void AppendQuoted(std::string& out, std::string_view text) {
  out += '"';
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      out += '\\';
      out += c;
    } else if (c == '\n') {
      out += "\\n";
    } else if (byte < 0x20) {
      out += "\\u00";
      out += kHexDigits[byte >> 4];
      out += kHexDigits[byte & 15];
    } else {
      out += c;
    }
  }
  out += '"';
}

template <typename T>
void AppendNumber(std::string& out, T number) {
  std::array<char, 32> digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  out.append(digits.data(), end);
}

// Everything but a list or an object.
void AppendScalar(std::string& out, const JsonValue& value) {
  if (const auto* flag = value.AsBool()) {
    out += *flag ? "true" : "false";
  } else if (const auto* whole = value.AsSigned()) {
    AppendNumber(out, *whole);
  } else if (const auto* natural = value.AsUnsigned()) {
    AppendNumber(out, *natural);
  } else if (const auto* number = value.AsDouble()) {
    AppendNumber(out, *number);
  } else if (const auto* text = value.AsText()) {
    AppendQuoted(out, *text);
  } else {
    out += "null";
  }
}

// A list or object that is being written, and how many of its elements are out already.
struct OpenContainer {
  const JsonValue* value;
  size_t next = 0;
};

size_t ElementCount(const JsonValue& value) {
  return value.AsArray() ? value.AsArray()->size() : value.AsObject()->size();
}

}  // namespace

JsonValue::JsonValue() = default;
JsonValue::JsonValue(const JsonValue& other) = default;
JsonValue::JsonValue(JsonValue&& other) noexcept = default;
JsonValue& JsonValue::operator=(const JsonValue& other) = default;
JsonValue& JsonValue::operator=(JsonValue&& other) noexcept = default;
JsonValue::~JsonValue() = default;
JsonValue::JsonValue(double value) : value_(value) {}
JsonValue::JsonValue(const char* value) : value_(std::string(value)) {}
JsonValue::JsonValue(std::string_view value) : value_(std::string(value)) {}
JsonValue::JsonValue(std::string value) : value_(std::move(value)) {}
JsonValue::JsonValue(Array value) : value_(std::move(value)) {}
JsonValue::JsonValue(Object value) : value_(std::move(value)) {}

const JsonValue* JsonValue::Find(std::string_view name) const {
  const Object* object = AsObject();
  if (object == nullptr) return nullptr;
  for (const Member& member : *object) {
    if (member.name == name) return &member.value;
  }
  return nullptr;
}

std::string_view JsonValue::KindName() const {
  constexpr std::array<std::string_view, 8> kWords = {
      "null",     "true or false", "a whole number", "a whole number",
      "a number", "a text",        "a list",         "an object"};
  return kWords[value_.index()];
}

std::string WriteJson(const JsonValue& root) {
  std::string out;
  std::vector<OpenContainer> open;
  const auto begin = [&](const JsonValue& value) {
    if (value.AsArray() == nullptr && value.AsObject() == nullptr) return AppendScalar(out, value);
    out += value.AsArray() ? '[' : '{';
    open.push_back({&value});
  };
  begin(root);
  while (!open.empty()) {
    OpenContainer& top = open.back();
    const JsonValue::Array* array = top.value->AsArray();
    if (top.next == ElementCount(*top.value)) {
      out += array ? ']' : '}';
      open.pop_back();
      continue;
    }
    if (top.next > 0) out += ',';
    const size_t index = top.next++;
    if (array != nullptr) {
      begin((*array)[index]);
      continue;
    }
    const JsonValue::Member& member = (*top.value->AsObject())[index];
    AppendQuoted(out, member.name);
    out += ':';
    begin(member.value);
  }
  return out;
}

std::string QuoteJson(std::string_view text) {
  std::string out;
  AppendQuoted(out, text);
  return out;
}

}  // namespace Kest::Host
