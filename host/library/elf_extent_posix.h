// How long the file of a shared library has to be. The system's loader maps what the file's tables
// name without a look at its length, and a page beyond the file's end ends the process.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Kest::Host {

// Where the last of the file's segments and tables ends; the greatest number when that is beyond
// all numbers. Nothing for what is no library of this process' width: the loader refuses that.
std::optional<uint64_t> ElfExtent(const std::string& path);

}  // namespace Kest::Host
