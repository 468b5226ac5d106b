// Files that are never half written: readers and a restart see the old text or the new one.
#pragma once

#include <string>
#include <string_view>

#include "base/maybe_type.h"

namespace Kest::Host {

// Writes `text` beside `path`, to the disk, and then puts it in the place of `path`. A failure
// leaves the file as it was.
Maybe<Nothing> WriteFileAtomically(const std::string& path, std::string_view text);

}  // namespace Kest::Host
