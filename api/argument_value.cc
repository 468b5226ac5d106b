#include "api/argument_value.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <span>
#include <string>
#include <utility>

#include "api/http_names.h"
#include "binding/json/json_adapter.h"
#include "binding/msgpack/msgpack_reader.h"
#include "binding/yaml/yaml_adapter.h"
#include "log/positional_format.h"

namespace Kest {
namespace {

constexpr std::string_view kWhitespace = " \t\r\n";

// A decoder's message for the one failure that is not about the input.
constexpr std::string_view kOutOfMemory = "Out of memory";

// Bytes after the first value. The misspelling is part of the interface; keep it.
constexpr std::string_view kExtraBodyData = "Extra MessgePack data found in body";

// A MessagePack map or array begins with such a byte, a JSON value never.
bool BeginsMessagePack(std::string_view text) {
  const auto first = text.empty() ? uint8_t{0} : static_cast<uint8_t>(text.front());
  return (first >= 0x80 && first <= 0x9F) || (first >= 0xDC && first <= 0xDF);
}

std::string_view TrimLeadingWhitespace(std::string_view text) {
  const size_t start = text.find_first_not_of(kWhitespace);
  return start == std::string_view::npos ? std::string_view() : text.substr(start);
}

std::span<const uint8_t> BytesOf(std::string_view text) {
  return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

// Decodes one format into a tree; failures have the decoder's own messages.
struct Decoder {
  ValueFormat format;
  std::string_view name;
  BindingProperty (*decode)(ConversionContext& context, std::string_view text);
};

BindingProperty DecodeJson(ConversionContext& context, std::string_view text) {
  return ReadJson(context, text);
}

BindingProperty DecodeMessagePack(ConversionContext& context, std::string_view text) {
  size_t consumed = text.size();
  BindingProperty tree = ReadMessagePack(context, BytesOf(text), &consumed);
  if (consumed < text.size()) context.Fail(kExtraBodyData);
  return tree;
}

// The formats that need decoding: all but strings and bytes.
constexpr Decoder kDecoders[] = {
    {ValueFormat::kJson, "JSON", &DecodeJson},
    {ValueFormat::kMessagePack, "MessagePack", &DecodeMessagePack},
    {ValueFormat::kYaml, "YAML", &ReadYaml},
};

const Decoder& FindDecoder(ValueFormat format) {
  return *std::find_if(std::begin(kDecoders), std::end(kDecoders),
                       [format](const Decoder& d) { return d.format == format; });
}

}  // namespace

ValueFormat ChooseValueFormat(std::string_view contentType, bool structured,
                              std::string_view* text) {
  const bool sniffed = structured && contentType.empty();
  if (HasContentType(contentType, kContentTypeMessagePack)) return ValueFormat::kMessagePack;
  if (sniffed && BeginsMessagePack(*text)) return ValueFormat::kMessagePack;
  const std::string_view start = sniffed ? TrimLeadingWhitespace(*text) : std::string_view();
  if (HasContentType(contentType, kContentTypeJson) || start.starts_with('{') ||
      start.starts_with('[')) {
    return ValueFormat::kJson;
  }
  if (HasContentType(contentType, kContentTypeYamlValue)) return ValueFormat::kYaml;
  if (start.starts_with("---")) {
    *text = start;  // indented, it would be no document's begin
    return ValueFormat::kYaml;
  }
  if (HasContentType(contentType, kContentTypeBytes)) return ValueFormat::kBytes;
  return ValueFormat::kString;
}

std::optional<ValueFormat> ChooseBodyFormat(std::string_view contentType) {
  if (HasContentType(contentType, kContentTypeMessagePack)) return ValueFormat::kMessagePack;
  if (HasContentType(contentType, kContentTypeJson)) return ValueFormat::kJson;
  if (HasContentType(contentType, kContentTypeJsonApi)) return ValueFormat::kJson;
  if (HasContentType(contentType, kContentTypeYamlBody)) return ValueFormat::kYaml;
  return std::nullopt;
}

void DecodeValue(ConversionContext& context, const ValueOwner& owner, ValueFormat format,
                 std::string_view text, BindingProperty* target) {
  if (format == ValueFormat::kString) return target->SetString(text);
  if (format == ValueFormat::kBytes) return target->SetBlob(BytesOf(text));
  const Decoder& decoder = FindDecoder(format);
  ConversionContext decoding(context.registry());
  BindingProperty tree = decoder.decode(decoding, text);
  if (decoding.Ok()) {
    *target = std::move(tree);
    return;
  }
  const std::string error = decoding.ErrorMessage();
  if (error == kOutOfMemory) throw std::bad_alloc();
  if (owner.isBody && error == kExtraBodyData) return context.Fail(error);
  context.Fail(Format("Couldn't deserialize %1 value for parameter '%2' of '%3': %4", decoder.name,
                      owner.argument, owner.function, error));
}

}  // namespace Kest
