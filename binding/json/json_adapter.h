// JSON text to trees and native values, and back. One message per cause, in the decoder's own
// words ("Missing a comma or ']' after an array element.").
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "binding/convert/conversion_context.h"
#include "binding/convert/convert.h"
#include "binding/json/json_writer.h"
#include "binding/tree/binding_property.h"

namespace Kest {

// Longer texts are refused with "Body is too large" before they are looked at.
inline constexpr size_t kMaxJsonBytes = size_t{64} << 20;

// Reads one JSON document. Strict grammar, valid UTF-8 (one byte-order mark is skipped), any depth.
// Numbers are exact: integers become unsigned, or signed after a minus sign; beyond 64 bits, or
// with a fraction or exponent, float. One that fits no double is refused; so is, by its exponent
// alone, a zero with one above 308. Of members of one name the last value counts, in the place of
// the first. On failure returns an empty value and, with `errorOffset`, where in the text it lies.
// Failures besides the decoder's: "Body is too large", "Too many values.", "Out of memory".
BindingProperty ReadJson(ConversionContext& context, std::string_view text,
                         size_t* errorOffset = nullptr);

// Appends the tree as compact JSON: members in tree order, enumerators by name (by number without
// one), floats so that they read back exactly. A byte that is no UTF-8 is written as U+FFFD. NaN,
// infinities and blobs that are no UTF-8 fail; then nothing is appended.
void WriteJson(ConversionContext& context, const BindingProperty& tree, std::string* out);

// The same for a native value, without a tree between; allocates nothing once `*out` has capacity.
template <typename T>
void WriteJsonValue(ConversionContext& context, const T& value, std::string* out) {
  JsonWriter writer(out);
  Read(context, value, writer);
  writer.Finish(context);
}

// Reads a document and assigns it to `*target`, which `path` names in messages.
template <typename T>
void ReadJsonValue(ConversionContext& context, std::string_view path, std::string_view text,
                   T* target) {
  const BindingProperty tree = ReadJson(context, text);
  Assign(context, path, tree, target);
}

}  // namespace Kest
