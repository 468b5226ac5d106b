// The form of a floating-point number in JSON.
#pragma once

#include <cstddef>

namespace Kest {

inline constexpr size_t kMaxJsonFloat = 32;

// Writes the shortest text that reads back as `value` at `to`, which has kMaxJsonFloat bytes, and
// returns its size. Up to 21 digits before the point are written out ("100.0", "0.001"), others
// with an exponent ("1e22", "1.5e-7"). REQUIRES: a finite value.
size_t WriteJsonFloat(double value, char* to);

}  // namespace Kest
