#include "host/world/json/field_reader.h"

#include <algorithm>

namespace Kest::Host {

FieldReader::FieldReader(const JsonValue& value, IssueReport& report)
    : value_(value), report_(report) {
  if (value.AsObject() == nullptr) {
    report_.Add(value.position(), "expected an object, found " + std::string(value.KindName()));
  }
}

std::string FieldReader::Text(std::string_view name) {
  const JsonValue* value = FindRequired(name);
  if (value == nullptr) return "";
  std::string text = TextOr(name, "");
  if (text.empty()) report_.Add(value->position(), QuoteJson(name) + " must not be empty");
  return text;
}

std::string FieldReader::TextOr(std::string_view name, std::string_view missing) {
  const JsonValue* value = Find(name);
  if (value == nullptr) return std::string(missing);
  if (const std::string* text = value->AsText()) return *text;
  WrongKind(name, *value, "a text");
  return std::string(missing);
}

int64_t FieldReader::Whole(std::string_view name, int64_t lowest, int64_t highest) {
  const JsonValue* value = FindRequired(name);
  return value == nullptr ? lowest : ToWhole(name, *value, lowest, highest);
}

int64_t FieldReader::WholeOr(std::string_view name, int64_t missing, int64_t lowest,
                             int64_t highest) {
  const JsonValue* value = Find(name);
  return value == nullptr ? missing : ToWhole(name, *value, lowest, highest);
}

uint64_t FieldReader::NaturalOr(std::string_view name, uint64_t missing) {
  const JsonValue* value = Find(name);
  if (value == nullptr) return missing;
  if (const uint64_t* natural = value->AsUnsigned()) return *natural;
  if (const int64_t* whole = value->AsSigned(); whole != nullptr && *whole >= 0) {
    return static_cast<uint64_t>(*whole);
  }
  WrongKind(name, *value, "a whole number from 0 on");
  return missing;
}

double FieldReader::NumberOr(std::string_view name, double missing, double lowest, double highest) {
  const JsonValue* value = Find(name);
  if (value == nullptr) return missing;
  double number = missing;
  if (const double* real = value->AsDouble()) {
    number = *real;
  } else if (const int64_t* whole = value->AsSigned()) {
    number = static_cast<double>(*whole);
  } else {
    WrongKind(name, *value, "a number");
    return missing;
  }
  if (!(number >= lowest && number <= highest)) {
    report_.Add(value->position(), QuoteJson(name) + " must lie between " +
                                       WriteJson(JsonValue(lowest)) + " and " +
                                       WriteJson(JsonValue(highest)));
    return missing;
  }
  return number;
}

bool FieldReader::FlagOr(std::string_view name, bool missing) {
  const JsonValue* value = Find(name);
  if (value == nullptr) return missing;
  if (const bool* flag = value->AsBool()) return *flag;
  WrongKind(name, *value, "true or false");
  return missing;
}

std::vector<std::string> FieldReader::TextsOr(std::string_view name) {
  std::vector<std::string> texts;
  for (const JsonValue& element : ListOr(name)) {
    if (const std::string* text = element.AsText()) {
      texts.push_back(*text);
    } else {
      WrongKind(name, element, "a list of texts");
    }
  }
  return texts;
}

const JsonValue::Array& FieldReader::ListOr(std::string_view name) {
  static const JsonValue::Array kEmpty;
  const JsonValue* value = Find(name);
  if (value == nullptr) return kEmpty;
  if (const JsonValue::Array* array = value->AsArray()) return *array;
  WrongKind(name, *value, "a list");
  return kEmpty;
}

const JsonValue* FieldReader::Find(std::string_view name) {
  asked_.push_back(name);
  return report_.failed() ? nullptr : value_.Find(name);
}

TextPosition FieldReader::Place(std::string_view name) const {
  const JsonValue* value = value_.Find(name);
  return value == nullptr ? value_.position() : value->position();
}

void FieldReader::Finish() {
  if (value_.AsObject() == nullptr) return;
  for (const JsonValue::Member& member : *value_.AsObject()) {
    if (report_.failed()) return;
    if (std::find(asked_.begin(), asked_.end(), member.name) == asked_.end()) {
      report_.Add(member.position, "unknown member " + QuoteJson(member.name));
    }
  }
}

const JsonValue* FieldReader::FindRequired(std::string_view name) {
  const JsonValue* value = Find(name);
  if (value == nullptr) report_.Add(value_.position(), "member " + QuoteJson(name) + " is missing");
  return value;
}

void FieldReader::WrongKind(std::string_view name, const JsonValue& value,
                            std::string_view wanted) {
  report_.Add(value.position(), QuoteJson(name) + " must be " + std::string(wanted) + ", not " +
                                    std::string(value.KindName()));
}

int64_t FieldReader::ToWhole(std::string_view name, const JsonValue& value, int64_t lowest,
                             int64_t highest) {
  const int64_t* whole = value.AsSigned();
  if (whole == nullptr && value.AsUnsigned() == nullptr) {
    WrongKind(name, value, "a whole number");
    return lowest;
  }
  if (whole == nullptr || *whole < lowest || *whole > highest) {
    report_.Add(value.position(), QuoteJson(name) + " must lie between " + std::to_string(lowest) +
                                      " and " + std::to_string(highest));
    return lowest;
  }
  return *whole;
}

}  // namespace Kest::Host
