// What a piece of outside text is - JSON, MessagePack, plain text, bytes - and its decoding.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "binding/convert/conversion_context.h"
#include "binding/tree/binding_property.h"

namespace Kest {

enum class ValueFormat : uint8_t { kText, kBytes, kJson, kMessagePack, kYaml };

// The format of an argument's value. `contentType` decides; without one, a structured value (of an
// object, structure or vector) is known by how it begins. Everything else is text.
ValueFormat ChooseValueFormat(std::string_view contentType, std::string_view text, bool structured);

// The format of a request body; none for a content type that bodies cannot have.
std::optional<ValueFormat> ChooseBodyFormat(std::string_view contentType);

// Whose value is decoded, for failure texts.
struct ValueOwner {
  std::string_view argument;
  std::string_view function;
  bool isBody = false;
};

// Decodes `text` and replaces `*target` by it. Failures:
//   "Couldn't deserialize JSON value for parameter '%1' of '%2': %3" (%3 the decoder's words), so
//     for each format by its name
//   "Extra MessgePack data found in body" for bytes behind its value; bare for a body, otherwise as
//     the decoder's words
// Throws std::bad_alloc when memory ends.
void DecodeValue(ConversionContext& context, const ValueOwner& owner, ValueFormat format,
                 std::string_view text, BindingProperty* target);

inline constexpr std::string_view kUnsupportedContentType = "Unsupported body content type";

}  // namespace Kest
