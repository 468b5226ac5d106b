#include "binding/convert/assign_scalar.h"

#include <concepts>
#include <limits>
#include <type_traits>
#include <utility>

#include "base/number_string.h"
#include "base/round_to_nearest.h"
#include "binding/convert/conversion_messages.h"
#include "binding/convert/native_type.h"
#include "log/positional_format.h"

namespace Kest {
namespace {

template <typename T>
std::string_view NameOf() {
  return TypeIdName(Native::IdOf<T>());
}

void FailKind(ConversionContext& context, std::string_view path, std::string_view type,
              const BindingProperty& input) {
  context.Fail(Format(kInvalidKind, path, type, KindName(input.kind())));
}

// Whether an integer is in the range of T; its sign counts.
template <typename T, std::integral V>
bool Fits(V value) {
  if constexpr (std::is_floating_point_v<T>) {
    return true;
  } else {
    return std::in_range<T>(value);
  }
}

// Whether the value, its fraction included, lies in the range of T: 127.5 is beyond int8_t. Written
// so that NaN does not. The 64-bit maxima are no doubles: their successors, powers of two, are the
// bounds instead.
template <typename T>
bool Fits(double value) {
  using Limits = std::numeric_limits<T>;
  if constexpr (std::is_integral_v<T> && sizeof(T) == 8) {
    constexpr double kEnd = std::is_signed_v<T> ? 0x1p63 : 0x1p64;
    return static_cast<double>(Limits::min()) <= value && value < kEnd;
  } else {
    return static_cast<double>(Limits::lowest()) <= value &&
           value <= static_cast<double>(Limits::max());
  }
}

// What a number is called in messages.
template <typename V>
auto Shown(V value) {
  if constexpr (std::is_floating_point_v<V>) {
    return RoundTripString(value);
  } else {
    return value;
  }
}

template <typename T, typename V>
void AssignInRange(ConversionContext& context, std::string_view path, V value, T* target) {
  if (!Fits<T>(value)) {
    context.Fail(Format(kOutOfRange, Shown(value), path, NameOf<T>()));
  } else if constexpr (std::is_floating_point_v<T> && std::is_same_v<V, uint64_t>) {
    *target = RoundToNearest<T>(value);
  } else {
    *target = static_cast<T>(value);
  }
}

template <typename T>
void AssignText(ConversionContext& context, std::string_view path, std::string_view text,
                T* target) {
  using Wide = std::conditional_t<std::is_floating_point_v<T>, double,
                                  std::conditional_t<std::is_signed_v<T>, int64_t, uint64_t>>;
  Wide value = 0;
  NumberParseStatus outcome;
  if constexpr (std::is_floating_point_v<T>) {
    outcome = ParseFloatText(text, &value);
  } else {
    outcome = ParseIntegerText(text, &value);
  }
  if (outcome == NumberParseStatus::kMalformed) {
    context.Fail(Format(kNumberFormat, text, path, NameOf<T>()));
  } else if (outcome == NumberParseStatus::kOutOfRange || !Fits<T>(value)) {
    context.Fail(Format(kOutOfRange, text, path, NameOf<T>()));
  } else {
    *target = static_cast<T>(value);
  }
}

bool TryParseBool(std::string_view text, bool* value) {
  *value = text == "1" || text == "true";
  return *value || text == "0" || text == "false";
}

// Takes a number, or a text that is none of the names, for the enumerator it is the value of.
template <typename V>
bool TryEnumerator(const TypeRecord& type, V value, int32_t* target) {
  if (!std::in_range<int32_t>(value)) return false;
  if (type.FindEnumerator(static_cast<int32_t>(value)) == nullptr) return false;
  *target = static_cast<int32_t>(value);
  return true;
}

bool TryEnumerator(const TypeRecord& type, std::string_view text, int32_t* target) {
  if (const EnumeratorRecord* named = type.FindEnumerator(text)) {
    *target = named->value;
    return true;
  }
  int64_t value = 0;
  return ParseIntegerText(text, &value) == NumberParseStatus::kOk &&
         TryEnumerator(type, value, target);
}

template <typename V>
void AssignEnumerator(ConversionContext& context, std::string_view path, const TypeRecord& type,
                      V value, int32_t* target) {
  if (TryEnumerator(type, value, target)) return;
  context.Fail(Format(kNotAnEnumerator, value, type.name, path));
}

}  // namespace

void AssignScalar(ConversionContext& context, std::string_view path, const BindingProperty& input,
                  bool* target) {
  if (!context.Ok()) return;
  switch (input.kind()) {
    case BindingKind::kBool:
      *target = input.AsBool();
      return;
    case BindingKind::kString: {
      bool value = false;
      if (!TryParseBool(input.AsString(), &value)) {
        return context.Fail(Format(kBoolFormat, input.AsString(), path));
      }
      *target = value;
      return;
    }
    case BindingKind::kEmpty:
      return context.Fail(Format(kValueRequired, path));
    default:
      return FailKind(context, path, NameOf<bool>(), input);
  }
}

template <BoundNumber T>
void AssignScalar(ConversionContext& context, std::string_view path, const BindingProperty& input,
                  T* target) {
  if (!context.Ok()) return;
  switch (input.kind()) {
    case BindingKind::kEmpty:
      return context.Fail(Format(kValueRequired, path));
    case BindingKind::kSigned:
      return AssignInRange(context, path, input.AsSigned(), target);
    case BindingKind::kUnsigned:
      return AssignInRange(context, path, input.AsUnsigned(), target);
    case BindingKind::kFloat:
      return AssignInRange(context, path, input.AsFloat(), target);
    case BindingKind::kString:
      return AssignText(context, path, input.AsString(), target);
    case BindingKind::kEnum:
      return AssignInRange(context, path, int64_t{input.EnumValue()}, target);
    default:
      return FailKind(context, path, NameOf<T>(), input);
  }
}

template void AssignScalar(ConversionContext&, std::string_view, const BindingProperty&, int8_t*);
template void AssignScalar(ConversionContext&, std::string_view, const BindingProperty&, uint8_t*);
template void AssignScalar(ConversionContext&, std::string_view, const BindingProperty&, int16_t*);
template void AssignScalar(ConversionContext&, std::string_view, const BindingProperty&, uint16_t*);
template void AssignScalar(ConversionContext&, std::string_view, const BindingProperty&, int32_t*);
template void AssignScalar(ConversionContext&, std::string_view, const BindingProperty&, uint32_t*);
template void AssignScalar(ConversionContext&, std::string_view, const BindingProperty&, int64_t*);
template void AssignScalar(ConversionContext&, std::string_view, const BindingProperty&, uint64_t*);
template void AssignScalar(ConversionContext&, std::string_view, const BindingProperty&, float*);
template void AssignScalar(ConversionContext&, std::string_view, const BindingProperty&, double*);

void AssignScalar(ConversionContext& context, std::string_view path, const BindingProperty& input,
                  std::string* target) {
  if (!context.Ok()) return;
  switch (input.kind()) {
    case BindingKind::kString:
      target->assign(input.AsString());
      return;
    case BindingKind::kEnum: {
      const EnumeratorRecord* named = input.EnumType().FindEnumerator(input.EnumValue());
      if (named == nullptr) {
        return context.Fail(Format(kNamelessEnumerator, input.EnumValue(), path));
      }
      *target = named->name;
      return;
    }
    case BindingKind::kEmpty:
      return context.Fail(Format(kValueRequired, path));
    default:
      return context.Fail(Format(kNotAString, path));
  }
}

void AssignScalar(ConversionContext& context, std::string_view path, const BindingProperty& input,
                  std::vector<uint8_t>* target) {
  if (!context.Ok()) return;
  switch (input.kind()) {
    case BindingKind::kBlob:
      target->assign(input.AsBlob().begin(), input.AsBlob().end());
      return;
    case BindingKind::kString:
      target->assign(input.AsString().begin(), input.AsString().end());
      return;
    case BindingKind::kEmpty:
      return context.Fail(Format(kValueRequired, path));
    default:
      return FailKind(context, path, TypeIdName(TypeId::kBlob), input);
  }
}

void AssignScalar(ConversionContext& context, std::string_view path, const BindingProperty& input,
                  BindingProperty* target) {
  if (!context.Ok()) return;
  if (input.kind() > BindingKind::kStructure) {
    return context.Fail(Format(kIncompatibleObject, path, KindName(input.kind())));
  }
  *target = input;
}

void AssignEnumeration(ConversionContext& context, std::string_view path,
                       const BindingProperty& input, const TypeRecord* type, int32_t* target) {
  if (!context.Ok()) return;
  if (input.IsEmpty()) return context.Fail(Format(kValueRequired, path));
  if (type == nullptr) return context.Fail(Format(kUnregistered, path));
  switch (input.kind()) {
    case BindingKind::kSigned:
      return AssignEnumerator(context, path, *type, input.AsSigned(), target);
    case BindingKind::kUnsigned:
      return AssignEnumerator(context, path, *type, input.AsUnsigned(), target);
    case BindingKind::kString:
      return AssignEnumerator(context, path, *type, input.AsString(), target);
    case BindingKind::kEnum:
      return AssignEnumerator(context, path, *type, input.EnumValue(), target);
    default:
      return context.Fail(Format(kEnumInvalidKind, path, KindName(input.kind())));
  }
}

}  // namespace Kest
