#include "api/result_encoder.h"

#include "api/accept.h"
#include "api/http_names.h"
#include "binding/convert/conversion_context.h"
#include "binding/json/json_writer.h"
#include "binding/msgpack/msgpack_writer.h"
#include "log/positional_format.h"

namespace Kest {
namespace {

constexpr std::string_view kNoConversion =
    "Failed to convert type {type} to BindingProperty for serialization";

// Appends the value to the body through a `Writer`.
template <typename Writer>
void WriteBody(ConversionContext& context, const FunctionCall& call, const NativeResult& result,
               Response* response) {
  Writer writer(&response->body);
  result.accessor.Read(context, result.value, call.function.Record().returns, writer);
  writer.Finish(context);
}

}  // namespace

Response EncodeResult(const FunctionCall& call, const NativeResult& result) {
  ConversionContext context(call.registry);
  Response response;
  switch (ChooseResultFormat(call.accept)) {
    case ResultFormat::kJson:
      response.contentType = kContentTypeJson;
      response.sharedBody = result.json;
      if (result.json.text.empty()) WriteBody<JsonWriter>(context, call, result, &response);
      break;
    case ResultFormat::kMessagePack:
      response.contentType = kContentTypeMessagePack;
      WriteBody<MessagePackWriter>(context, call, result, &response);
      break;
  }
  if (context.Ok()) return response;
  return InternalServerError(FormatNamed(kNoConversion, {{"type", result.typeName}}));
}

}  // namespace Kest
