// The sample world's file, placed in the program when it is built.
#pragma once

#include <string_view>

namespace Kest::Host {

extern const std::string_view kSampleWorldText;

}  // namespace Kest::Host
