// Formats the message of a log line: printf's conversions without the C library.
#pragma once

#include <cstdarg>
#include <string_view>

#include "log/fixed_buffer.h"
#include "log/printf_attribute.h"

namespace Kest {

// A va_list that can be handed on by reference on every system, without a copy.
struct ArgumentList {
  va_list list;
};

// Writes the text that vsnprintf would write in the "C" locale; a long double counts as a double.
// Not offered: "%n" and wide texts; formatting ends there, as it does at a malformed conversion.
// Consumes `arguments`.
void AppendPrintf(FixedBuffer& out, const char* format, ArgumentList& arguments) KEST_PRINTF(2, 0);

}  // namespace Kest
