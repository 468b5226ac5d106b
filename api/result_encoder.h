// Encodes a handler's result as the body of a response.
#pragma once

#include <string_view>

#include "api/bound_function.h"
#include "api/response.h"
#include "base/shared_text.h"
#include "binding/convert/value_accessor.h"

namespace Kest {

// A native value together with what is needed to read it.
struct NativeResult {
  const void* value;
  const ValueAccessor& accessor;
  std::string_view typeName;  // full native name
  SharedText json;            // the value as JSON; empty: to be written
};

// 200 with the value in the encoding that fits `call.accept`, written straight from the native
// value; 500 "Failed to convert type {type} to BindingProperty for serialization" when it has none.
Response EncodeResult(const FunctionCall& call, const NativeResult& result);

}  // namespace Kest
