#include "host/world/input/field_reader.h"

#include <algorithm>

#include "base/ascii.h"
#include "host/json/json_text.h"

namespace Kest::Host {
namespace {

constexpr size_t kMaxWarnings = 100;

// A value in a message: itself, or its kind when it has parts.
std::string Found(const Json& value) {
  if (value.is_array()) return "a list";
  return value.is_object() ? "an object" : WriteJson(value);
}

}  // namespace

FieldReader::FieldReader(const Document& document)
    : FieldReader(document.root(), document, &own_) {}

FieldReader::FieldReader(const Json& value, FieldReader& owner)
    : FieldReader(value, owner.document_, owner.findings_) {}

FieldReader::FieldReader(const Json& value, const Document& document, Findings* findings)
    : value_(value), document_(document), findings_(findings) {
  if (!value.is_object()) Fail("must be an object, found " + Found(value));
}

template <typename T>
T FieldReader::Keep(std::string_view name, T value) {
  values_.emplace(std::string(name), value);
  return value;
}

std::string FieldReader::String(std::string_view name) {
  const Json* value = FindRequired(name);
  if (value == nullptr) return "";
  std::string text = StringOr(name, "");
  if (text.empty()) FailPart(*value, JsonString(name) + " must not be empty");
  return text;
}

std::string FieldReader::StringOr(std::string_view name, std::string_view missing) {
  const Json* value = Find(name);
  const auto* text = value == nullptr ? nullptr : value->get_ptr<const std::string*>();
  if (value != nullptr && text == nullptr) WrongKind(name, *value, "a string");
  return Keep(name, text == nullptr ? std::string(missing) : *text);
}

int64_t FieldReader::Integer(std::string_view name, int64_t lowest, int64_t highest) {
  const Json* value = FindRequired(name);
  return Keep(name, value == nullptr ? lowest : ToInteger(name, *value, lowest, highest));
}

int64_t FieldReader::IntegerOr(std::string_view name, int64_t missing, int64_t lowest,
                               int64_t highest) {
  const Json* value = Find(name);
  return Keep(name, value == nullptr ? missing : ToInteger(name, *value, lowest, highest));
}

uint64_t FieldReader::UnsignedOr(std::string_view name, uint64_t missing) {
  const Json* value = Find(name);
  const bool fits = value != nullptr && value->is_number_unsigned();
  if (value != nullptr && !fits) WrongKind(name, *value, "an integer from 0");
  return Keep(name, fits ? value->get<uint64_t>() : missing);
}

double FieldReader::NumberOr(std::string_view name, double missing, double lowest, double highest) {
  const Json* value = Find(name);
  double number = missing;
  if (value != nullptr && !value->is_number()) {
    WrongKind(name, *value, "a number");
  } else if (value != nullptr) {
    const auto found = value->get<double>();
    const bool fits = found >= lowest && found <= highest;
    if (!fits) OutOfRange(name, *value, lowest, highest);
    if (fits) number = found;
  }
  return Keep(name, number);
}

bool FieldReader::BoolOr(std::string_view name, bool missing) {
  const Json* value = Find(name);
  const bool fits = value != nullptr && value->is_boolean();
  if (value != nullptr && !fits) WrongKind(name, *value, "true or false");
  return Keep(name, fits ? value->get<bool>() : missing);
}

std::vector<std::string> FieldReader::StringsOr(std::string_view name) {
  std::vector<std::string> strings;
  for (const Json& element : ListOr(name)) {
    if (const auto* text = element.get_ptr<const std::string*>()) {
      strings.push_back(*text);
    } else {
      WrongKind(name, element, "a list of strings");
    }
  }
  return Keep(name, std::move(strings));
}

const Json& FieldReader::ListOr(std::string_view name) {
  static const Json kEmpty = Json::array();
  const Json* value = Find(name);
  if (value == nullptr) return kEmpty;
  if (value->is_array()) return *value;
  WrongKind(name, *value, "a list");
  return kEmpty;
}

const Json& FieldReader::ObjectOr(std::string_view name) {
  static const Json kEmpty = Json::object();
  const Json* value = Find(name);
  if (value == nullptr) return kEmpty;
  if (value->is_object()) return *value;
  WrongKind(name, *value, "an object");
  return kEmpty;
}

const Json* FieldReader::Find(std::string_view name) {
  asked_.push_back(name);
  if (!ok() || !value_.is_object()) return nullptr;
  const auto found = value_.find(name);
  return found == value_.end() ? nullptr : &*found;
}

void FieldReader::FailAt(std::string_view name, std::string_view message) {
  const Json* member = Find(name);
  FailPart(member == nullptr ? value_ : *member, message);
}

void FieldReader::WarnAt(std::string_view name, std::string_view message) {
  const Json* member = Find(name);
  WarnPart(member == nullptr ? value_ : *member, message);
}

std::vector<std::string> FieldReader::Warnings() const {
  return document_.Describe(findings_->warnings);
}

std::string FieldReader::Place() const {
  std::string place = document_.Describe(value_, false, "");
  return place.substr(0, place.rfind(": "));
}

bool FieldReader::Finish() {
  for (const auto& member : value_.items()) {
    if (!ok()) break;
    const std::string& name = member.key();
    if (std::find(asked_.begin(), asked_.end(), name) != asked_.end()) continue;
    const auto meant = std::find_if(asked_.begin(), asked_.end(), [&name](std::string_view asked) {
      return EqualIgnoringCase(asked, name);
    });
    const std::string question =
        meant == asked_.end() ? "" : "; did you mean " + JsonString(*meant) + "?";
    FailName(member.value(), "unknown member " + JsonString(name) + question);
  }
  return ok();
}

const Json* FieldReader::FindRequired(std::string_view name) {
  const Json* value = Find(name);
  if (value == nullptr) Fail("member " + JsonString(name) + " is missing");
  return value;
}

void FieldReader::WrongKind(std::string_view name, const Json& value, std::string_view wanted) {
  FailPart(value, JsonString(name) + " must be " + std::string(wanted) + ", found " + Found(value));
}

int64_t FieldReader::ToInteger(std::string_view name, const Json& value, int64_t lowest,
                               int64_t highest) {
  if (!value.is_number_integer()) {
    WrongKind(name, value, "an integer");
    return lowest;
  }
  const bool isLarge = value.is_number_unsigned() && value.get<uint64_t>() > uint64_t{kMax64};
  const auto integer = value.get<int64_t>();
  if (!isLarge && integer >= lowest && integer <= highest) return integer;
  OutOfRange(name, value, lowest, highest);
  return lowest;
}

template <typename T>
void FieldReader::OutOfRange(std::string_view name, const Json& value, T lowest, T highest) {
  FailPart(value, JsonString(name) + " must be between " + WriteJson(lowest) + " and " +
                      WriteJson(highest) + ", found " + WriteJson(value));
}

void FieldReader::Report(const Json& part, bool atName, std::string_view message) {
  if (ok()) findings_->failure = Failure{document_.Describe(part, atName, message), 400};
}

void FieldReader::Note(const Json& part, bool atName, std::string_view message) {
  if (findings_->warnings.size() >= kMaxWarnings) return;
  findings_->warnings.push_back({&part, atName, std::string(message)});
}

}  // namespace Kest::Host
