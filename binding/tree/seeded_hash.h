// Hash of strings from outside. Its key is drawn once per process, so no sender can prepare texts
// that collide.
#pragma once

#include <cstdint>
#include <string_view>

namespace Kest {

// SipHash-1-3, cut to 32 bits. Threads: any.
uint32_t SeededHash(std::string_view text);

}  // namespace Kest
