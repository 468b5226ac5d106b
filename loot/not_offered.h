// The one answer of endpoints that this build registers but does not serve.
#pragma once

#include "base/maybe_type.h"

namespace Kest::Client::Loot {

// HTTP 501, so that nobody takes an empty list for the player's real one.
inline Failure NotOffered() {
  return Failure{"Not Implemented", 501};
}

}  // namespace Kest::Client::Loot
