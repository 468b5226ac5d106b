#include "binding/yaml/yaml_scalar.h"

#include <algorithm>

#include "base/ascii.h"
#include "base/number_string.h"
#include "binding/convert/assign_scalar.h"
#include "binding/convert/conversion_messages.h"
#include "binding/yaml/yaml_messages.h"
#include "log/positional_format.h"

namespace Kest {
namespace {

// What messages call the values of a text.
constexpr std::string_view kPath = "yaml";

constexpr std::string_view kStringTag = "tag:yaml.org,2002:str";
constexpr std::string_view kIntegerTag = "tag:yaml.org,2002:int";
constexpr std::string_view kFloatTag = "tag:yaml.org,2002:float";
constexpr std::string_view kBoolTag = "tag:yaml.org,2002:bool";

// The words that a plain scalar may be.
enum class Word { kNone, kNull, kTrue, kFalse };

Word FindWord(std::string_view text) {
  switch (text.size()) {
    case 0:
      return Word::kNull;
    case 1:
      return text == "~" ? Word::kNull : Word::kNone;
    case 4:
      if (text == "true" || text == "True" || text == "TRUE") return Word::kTrue;
      return text == "null" || text == "Null" || text == "NULL" ? Word::kNull : Word::kNone;
    case 5:
      return text == "false" || text == "False" || text == "FALSE" ? Word::kFalse : Word::kNone;
    default:
      return Word::kNone;
  }
}

// Cuts the digits at the front of `text`; false when there is none.
bool TakeDigits(std::string_view* text) {
  size_t count = 0;
  while (count < text->size() && IsDigit((*text)[count])) ++count;
  text->remove_prefix(count);
  return count > 0;
}

// Whether the text is a number of JSON with a fraction or an exponent.
bool IsJsonFloat(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  const bool hasLeadingZero = text.size() > 1 && text[0] == '0' && IsDigit(text[1]);
  if (hasLeadingZero || !TakeDigits(&text) || text.empty()) return false;
  if (text.front() == '.') {
    text.remove_prefix(1);
    if (!TakeDigits(&text)) return false;
  }
  if (text.empty()) return true;
  if (text.front() != 'e' && text.front() != 'E') return false;
  text.remove_prefix(1);
  if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
  return TakeDigits(&text) && text.empty();
}

// Fails unless the number was read.
bool CheckNumber(ConversionContext& context, NumberParseStatus outcome, std::string_view text,
                 std::string_view type) {
  if (outcome == NumberParseStatus::kOk) return true;
  const bool isMalformed = outcome == NumberParseStatus::kMalformed;
  context.Fail(Format(isMalformed ? kNumberFormat : kOutOfRange, text, kPath, type));
  return false;
}

bool AddFloat(ConversionContext& context, std::string_view text, TreeBuilder& builder) {
  double value = 0;
  return CheckNumber(context, ParseFloatText(text, &value), text, "double") && builder.Float(value);
}

// `digits` are the text without its sign.
bool AddInteger(ConversionContext& context, std::string_view text, std::string_view digits,
                TreeBuilder& builder) {
  const bool isNegative = text.front() == '-';
  digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
  uint64_t magnitude = 0;
  if (TryParseDigits(digits, &magnitude)) {
    if (!isNegative) return builder.Unsigned(magnitude);
    if (magnitude <= uint64_t{1} << 63) return builder.Signed(static_cast<int64_t>(0 - magnitude));
  }
  return AddFloat(context, text, builder);
}

bool AddPlain(ConversionContext& context, std::string_view text, TreeBuilder& builder) {
  const Word word = FindWord(text);
  if (word == Word::kNull) return builder.Null();
  if (word != Word::kNone) return builder.Bool(word == Word::kTrue);
  const char first = text.front();
  const bool hasSign = first == '-' || first == '+';
  if (hasSign || IsDigit(first)) {
    const std::string_view digits = text.substr(hasSign ? 1 : 0);
    std::string_view rest = digits;
    if (TakeDigits(&rest) && rest.empty()) return AddInteger(context, text, digits, builder);
    if (IsJsonFloat(text)) return AddFloat(context, text, builder);
  }
  return builder.String(text);
}

bool AddInteger(ConversionContext& context, std::string_view text, TreeBuilder& builder) {
  if (text.starts_with('-')) {
    int64_t value = 0;
    return CheckNumber(context, ParseIntegerText(text, &value), text, "int64_t") &&
           builder.Signed(value);
  }
  uint64_t value = 0;
  return CheckNumber(context, ParseIntegerText(text, &value), text, "uint64_t") &&
         builder.Unsigned(value);
}

bool AddBool(ConversionContext& context, std::string_view text, TreeBuilder& builder) {
  const Word word = FindWord(text);
  bool value = word == Word::kTrue;
  if (!value && word != Word::kFalse) {
    AssignScalar(context, kPath, BindingProperty::FromString(text), &value);
  }
  return context.Ok() && builder.Bool(value);
}

}  // namespace

bool AddYamlScalar(ConversionContext& context, std::string_view text, const char* tag, bool isPlain,
                   TreeBuilder& builder) {
  if (tag == nullptr) return isPlain ? AddPlain(context, text, builder) : builder.String(text);
  if (tag == kStringTag) return builder.String(text);
  if (tag == kIntegerTag) return AddInteger(context, text, builder);
  if (tag == kFloatTag) return AddFloat(context, text, builder);
  if (tag == kBoolTag) return AddBool(context, text, builder);
  context.Fail(Format(kYamlUnsupportedTag, tag));
  return false;
}

bool IsYamlKey(std::string_view text, const char* tag, bool isPlain) {
  if (tag != nullptr) return tag == kStringTag;
  return !isPlain || FindWord(text) == Word::kNone;
}

}  // namespace Kest
