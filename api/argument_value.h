// The format of received data - JSON, YAML, MessagePack, a plain string, bytes - and its decoding.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "binding/convert/conversion_context.h"
#include "binding/tree/binding_property.h"

namespace Kest {

enum class ValueFormat : uint8_t { kString, kBytes, kJson, kMessagePack, kYaml };

// The format of an argument's value. `contentType` decides; without one, the first bytes of a
// structured value (an object, structure or vector). Everything else is a plain string. Whitespace
// before a YAML value that was recognised by its first bytes is removed from `*text`.
ValueFormat ChooseValueFormat(std::string_view contentType, bool structured,
                              std::string_view* text);

// The format of a request body; none for an unsupported content type.
std::optional<ValueFormat> ChooseBodyFormat(std::string_view contentType);

// Whose value is decoded, for failure messages.
struct ValueOwner {
  std::string_view argument;
  std::string_view function;
  bool isBody = false;
};

// Decodes `text` and replaces `*target` by it. Failures:
//   "Couldn't deserialize JSON value for parameter '%1' of '%2': %3" (%3 the decoder's message), or
//     the same with the name of another format
//   "Extra MessgePack data found in body" for bytes after the value: for a body the whole message,
//     otherwise the decoder's
// Throws std::bad_alloc when memory runs out.
void DecodeValue(ConversionContext& context, const ValueOwner& owner, ValueFormat format,
                 std::string_view text, BindingProperty* target);

inline constexpr std::string_view kUnsupportedContentType = "Unsupported body content type";

}  // namespace Kest
