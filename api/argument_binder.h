// Binds the parts of one request, or the list of a direct invocation, to a function's arguments.
//
// A name is cut at its first ".": the argument's name, then a path into its value. In
// "slots.2.name" the segment "2", as it begins with a digit, is an index (decimal, "0x"
// hexadecimal, "0" octal), "name" a member; missing ones are created. A name without a path and
// without a value means true, an empty structure or an empty collection, by the argument's type. A
// repeated name replaces the former value.
//
// Failures, the first of which wins:
//   "Unknown argument '%1' for '%2'."                                 argument, function
//   "Argument '%1' for '%2' was specified in an invalid location."    argument, function
//   "Index %1 is in an incorrect format"                              segment
//   "Index %1 is out of range"                                        segment
//   "Expected value for argument '%1'."                               argument
//   and those of DecodeValue (api/argument_value.h)
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "api/bound_function.h"
#include "api/request.h"
#include "api/route_template.h"
#include "binding/convert/conversion_context.h"

namespace Kest {

// How many elements the indexes of one request may create; one more is out of range.
inline constexpr size_t kMaxIndexedElements = 1'048'576;

// One call's binding. The steps do nothing once `context` has failed.
// Threads: one. The function and the context outlive it.
class ArgumentBinder {
 public:
  // Required bools start as false, all other arguments empty.
  ArgumentBinder(const BoundFunction& function, ConversionContext& context);

  // Of pairs with one name the last is used.
  void BindHeaders(std::span<const HeaderPair> headers);
  // Captures are percent-decoded.
  void BindCaptures(const RouteTemplate& route, const RouteCaptures& captures);
  void BindQuery(std::string_view query);
  // Does nothing without bytes or without a body argument.
  void BindBody(std::string_view contentType, std::string_view body);
  // A direct invocation: arguments of any location. Strings are decoded (an empty one stays an
  // empty string), values stored as they are.
  void BindList(std::span<const NamedValue> list);

  ArgumentValues TakeValues() { return std::move(values_); }

 private:
  void BindPair(ArgumentLocation location, std::string_view name, std::string_view text);
  void Store(size_t argument, std::string_view path, const NamedValue& value);
  void StoreWithoutValue(size_t argument);
  std::optional<size_t> FindArgument(std::string_view name);
  BindingProperty* WalkPath(BindingProperty* target, std::string_view path);
  BindingProperty* GetOrAddIndexed(BindingProperty* target, std::string_view segment);

  const BoundFunction& function_;
  ConversionContext& context_;
  ArgumentValues values_;
  size_t elementsLeft_ = kMaxIndexedElements;
};

}  // namespace Kest
