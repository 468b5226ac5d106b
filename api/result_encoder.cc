#include "api/result_encoder.h"

#include "api/http_names.h"
#include "binding/conversion_context.h"
#include "binding/json_writer.h"
#include "log/positional_format.h"

namespace Kest {
namespace {

constexpr std::string_view kNoConversion =
    "Failed to convert type {type} to BindingProperty for serialization";

void WriteJsonBody(ConversionContext& context, const FunctionCall& call, const NativeResult& result,
                   Response* response) {
  response->contentType = kContentTypeJson;
  JsonWriter writer(&response->body);
  result.accessor.Read(context, result.value, call.function.Record().returns, writer);
  writer.Finish(context);
}

// One encoding for bodies, its content type included.
using BodyEncoder = void (*)(ConversionContext&, const FunctionCall&, const NativeResult&,
                             Response*);

// The one place that looks at what the caller accepts. JSON is the only encoding so far, and
// the answer to every other wish.
BodyEncoder ChooseEncoder(std::string_view) {
  return &WriteJsonBody;
}

}  // namespace

Response EncodeResult(const FunctionCall& call, const NativeResult& result) {
  ConversionContext context(call.registry);
  Response response;
  ChooseEncoder(call.accept)(context, call, result, &response);
  if (context.Ok()) return response;
  return InternalServerError(FormatNamed(kNoConversion, {{"type", result.typeName}}));
}

}  // namespace Kest
