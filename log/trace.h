// The sink of the finer trace lines. It emits nothing; the compiler still checks the format against
// the arguments, and drops the call.
#pragma once

#include "log/printf_attribute.h"

namespace Kest {

inline void Trace(const char* format, ...) KEST_PRINTF(1, 2);
inline void Trace(const char*, ...) {}

}  // namespace Kest
