// Any tree, and each element of a list, to each family of native types. A value that converts, read
// out and assigned again, is the same; one that does not fails with a listed message and leaves
// the target alone; numbers fit exactly when they lie in range.
#include <cmath>
#include <limits>

#include "fuzz/described_tree.h"
#include "fuzz/failure_messages.h"
#include "fuzz/fuzz_support.h"
#include "fuzz/properties.h"
#include "fuzz/samples.h"
#include "fuzz/tree_notation.h"

namespace Kest::Fuzz {
namespace {

// Whether a number may be assigned, by a wider type than any target: it holds every 64-bit integer.
template <typename T>
void CheckNumber(const BindingProperty& input, bool converted, T value) {
  long double number = 0;
  if (input.kind() == BindingKind::kSigned) {
    number = static_cast<long double>(input.AsSigned());
  } else if (input.kind() == BindingKind::kUnsigned) {
    number = static_cast<long double>(input.AsUnsigned());
  } else if (input.kind() == BindingKind::kFloat) {
    number = static_cast<long double>(input.AsFloat());
  } else if (input.kind() == BindingKind::kEnum) {
    number = static_cast<long double>(input.EnumValue());
  } else {
    return;
  }
  using Limits = std::numeric_limits<T>;
  const bool fits = static_cast<long double>(Limits::lowest()) <= number &&
                    number <= static_cast<long double>(Limits::max());
  Require(converted == fits, "a number converts when it is in range", ExactTree(input));
  if (!converted) return;
  if constexpr (std::is_integral_v<T>) {
    Require(static_cast<long double>(value) == std::trunc(number),
            "a number is truncated toward zero", ExactTree(input));
  } else {
    Require(value == static_cast<T>(number), "a number is rounded once", ExactTree(input));
  }
}

// Maps without an order of their own may change theirs; the comparison of trees overlooks that, but
// also knows no NaN that equals itself.
void CheckSame(const BindingProperty& first, const BindingProperty& second) {
  if (!(first == second))
    RequireSame(ExactTree(first), ExactTree(second), "two values are the same");
}

template <typename T>
void CheckTarget(const BindingProperty& input) {
  ConversionContext context(Samples::Registry());
  T value{};
  Assign(context, "<input>", input, &value);
  if constexpr (std::is_arithmetic_v<T> && !std::is_same_v<T, bool>) {
    CheckNumber(input, context.Ok(), value);
  }
  if (!context.Ok()) {
    if constexpr (std::is_arithmetic_v<T>) Require(value == T(), "a failure leaves the target");
    RequireListed(context.ErrorMessage(), {kConversionFailures});
    return;
  }
  const BindingProperty read = ToProperty(context, value);
  Require(context.Ok(), "what was assigned can be read", context.ErrorMessage());
  T again{};
  Assign(context, "<input>", read, &again);
  Require(context.Ok(), "what was read can be assigned", context.ErrorMessage());
  CheckSame(read, ToProperty(context, again));
  if constexpr (std::is_same_v<T, BindingProperty>) {
    RequireSame(ExactTree(input), ExactTree(read), "a free value is taken as it is");
  }
}

// An empty member counts as a missing one.
template <typename T>
void CheckEmptyMembers(const BindingProperty& input) {
  if (input.kind() != BindingKind::kStructure) return;
  BindingProperty filled = BindingProperty::Structure();
  for (size_t i = 0; i < input.Size(); ++i) {
    const BindingProperty& value = input.MemberValue(i);
    if (!value.IsEmpty()) filled.GetOrAddMember(input.MemberName(i)) = value;
  }
  ConversionContext first(Samples::Registry()), second(Samples::Registry());
  T fromInput, fromFilled;
  Assign(first, "<input>", input, &fromInput);
  Assign(second, "<input>", filled, &fromFilled);
  RequireSame(second.ErrorMessage(), first.ErrorMessage(), "empty counts as missing");
  if (first.Ok()) CheckSame(ToProperty(first, fromInput), ToProperty(second, fromFilled));
}

template <typename... Targets>
void CheckTargets(const BindingProperty& input) {
  (CheckTarget<Targets>(input), ...);
}

void CheckScalars(const BindingProperty& input) {
  CheckTargets<bool, int8_t, uint8_t, int16_t, uint16_t, int32_t, uint32_t, int64_t, uint64_t,
               float, double, std::string, std::vector<uint8_t>, Samples::Grade, BindingProperty>(
      input);
}

}  // namespace

void CheckConversion(std::string_view input) {
  const BindingProperty tree = TakeTree(&input, Samples::GradeRecord());
  CheckScalars(tree);
  for (size_t i = 0; tree.FindElement(i) != nullptr; ++i) CheckScalars(tree.Element(i));
  CheckTargets<Samples::Part, Samples::Whole, std::vector<Samples::Part>, std::vector<int32_t>,
               std::map<std::string, Samples::Part>, std::unordered_map<std::string, double>,
               std::shared_ptr<const Samples::Part>>(tree);
  CheckEmptyMembers<Samples::Part>(tree);
  CheckEmptyMembers<Samples::Whole>(tree);
}

}  // namespace Kest::Fuzz
