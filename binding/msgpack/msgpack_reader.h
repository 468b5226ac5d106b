// MessagePack bytes to a tree.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "binding/convert/conversion_context.h"
#include "binding/tree/binding_property.h"

namespace Kest {

// More bytes are refused with "Body is too large" before they are looked at.
inline constexpr size_t kMaxMessagePackBytes = size_t{64} << 20;

// Reads the value that `bytes` begin with and sets `*consumed` to its size: whether more may follow
// is the caller's affair. Any depth. Fixints and the int family become signed, the uint family
// unsigned; texts keep their bytes, UTF-8 or not. Of members of one name the last value counts, in
// the place of the first. Extensions are refused. A claimed size takes no memory before its bytes
// are there.
// On failure returns an empty value and leaves `*consumed` alone. Positions are those of the first
// byte of the item in question, from zero:
//   "Invalid MessagePack data at position %1." for what is no item, or an extension; followed by
//     " Map keys must be strings." or " Too many values." where that is the reason
//   "Invalid MessagePack data. 8-bit integer value at position %1 is truncated.", also 16-, 32- and
//     64-bit: a number or length is cut off; 8-bit, too, when the whole item is missing
//   "Invalid MessagePack data. String of size %1 at position %2 is truncated."
//   "Invalid MessagePack data. Raw bytes of size %1 at position %2 are truncated."
//   "Body is too large", "Out of memory"
BindingProperty ReadMessagePack(ConversionContext& context, std::span<const uint8_t> bytes,
                                size_t* consumed);

}  // namespace Kest
