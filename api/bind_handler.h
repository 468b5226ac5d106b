// Makes a BoundFunction of a typed handler: converts the bound values to its parameters, calls it,
// and turns its result into a Response. Only what depends on the types is here; accessors and
// EncodeResult do the rest.
//
// A parameter T is required and T must be bindable (binding/convert/native_type.h);
// std::optional<T> may be absent. References must be const. Results:
//   T                                      200 with the value
//   Nothing, void                          204
//   std::shared_ptr<const T>               the same as T, without a copy
//   WithJson<any of these>                 the same, without writing the JSON
//   Maybe<any of these but void>           the failure's status and message, else as above
#pragma once

#include <optional>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "api/bound_function.h"
#include "api/http_names.h"
#include "api/result_encoder.h"
#include "base/maybe_type.h"
#include "base/shared_text.h"
#include "binding/convert/native_accessor.h"
#include "binding/convert/native_type.h"

namespace Kest {

// A result whose JSON is known; where it is empty it is written. The response shares it.
template <typename T>
struct WithJson {
  T value;
  SharedText json;
};

namespace Handlers {

template <typename Parameter>
struct ParameterOf {
  using Value = Parameter;
  static constexpr bool kOptional = false;
};
template <typename T>
struct ParameterOf<std::optional<T>> {
  using Value = T;
  static constexpr bool kOptional = true;
};

template <typename R>
struct ResultOf {
  using Value = R;
};
template <typename T>
struct ResultOf<Maybe<T>> : ResultOf<T> {};
template <typename T>
struct ResultOf<WithJson<T>> : ResultOf<T> {};
template <>
struct ResultOf<Nothing> {
  using Value = void;
};

template <typename Parameter>
ArgumentRecord DescribeParameter(const TypeRegistry& registry) {
  static_assert(
      !std::is_reference_v<Parameter> || std::is_const_v<std::remove_reference_t<Parameter>>,
      "take arguments by value or by const reference");
  using Traits = ParameterOf<std::remove_cvref_t<Parameter>>;
  ArgumentRecord record;
  record.type = IdentifyType<typename Traits::Value>(registry);
  record.optional = Traits::kOptional;
  return record;
}

template <typename R>
TypeIdentifier DescribeResult(const TypeRegistry& registry) {
  using Value = typename ResultOf<std::remove_cvref_t<R>>::Value;
  if constexpr (std::is_void_v<Value>) {
    return {};
  } else {
    return IdentifyType<Value>(registry);
  }
}

template <typename Stored>
void Convert(ConversionContext& context, const ArgumentRecord& argument,
             const BindingProperty& value, Stored* target) {
  using Value = typename ParameterOf<Stored>::Value;
  if constexpr (ParameterOf<Stored>::kOptional) {
    if (value.IsEmpty()) return;
    NativeAccessor<Value>().Assign(context, {argument.name, argument.type}, value,
                                   &target->emplace());
  } else {
    NativeAccessor<Value>().Assign(context, {argument.name, argument.type}, value, target);
  }
}

inline Response ToResponse(const FunctionCall&, const Nothing&) {
  Response response;
  response.status = kStatusNoContent;
  return response;
}
template <typename T>
Response ToResponse(const FunctionCall& call, const T& value, SharedText json = {}) {
  return EncodeResult(call, {&value, NativeAccessor<T>(), StaticType::Name<T>(), std::move(json)});
}
template <typename T>
Response ToResponse(const FunctionCall& call, const WithJson<T>& result) {
  return ToResponse(call, result.value, result.json);
}
template <typename T>
Response ToResponse(const FunctionCall& call, const Maybe<T>& result) {
  return result ? ToResponse(call, result.GetValue()) : FailureResponse(result.GetFailure());
}

template <typename R, typename... Parameters, typename Function, size_t... i>
Response Run(const Function& function, FunctionCall& call, std::index_sequence<i...>) {
  std::tuple<std::remove_cvref_t<Parameters>...> native{};
  ConversionContext context(call.registry);
  (Convert(context, call.function.Arguments()[i], call.values[i], &std::get<i>(native)), ...);
  if (!context.Ok()) return FailureResponse({context.ErrorMessage(), kStatusBadRequest});
  call.values = {};  // the handler may wait for long
  if constexpr (std::is_void_v<R>) {
    function(std::move(std::get<i>(native))...);
    return ToResponse(call, Nothing{});
  } else {
    return ToResponse(call, function(std::move(std::get<i>(native))...));
  }
}

}  // namespace Handlers

// `function` is callable as R(Parameters...).
template <typename R, typename... Parameters, typename Function>
BoundFunction BindHandler(const TypeRegistry& registry, std::string_view name, Function function) {
  return BoundFunction(name, {Handlers::DescribeParameter<Parameters>(registry)...},
                       Handlers::DescribeResult<R>(registry),
                       [function = std::move(function)](FunctionCall call) {
                         return Handlers::Run<R, Parameters...>(
                             function, call, std::index_sequence_for<Parameters...>());
                       });
}

}  // namespace Kest
