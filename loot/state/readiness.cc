#include "loot/state/readiness.h"

namespace Kest::Client::Loot {

bool Readiness::Set(uint8_t bits, uint8_t goal) {
  const bool wasReady = Ready();
  goal_ = goal;
  flags_ = static_cast<uint8_t>(flags_ | bits);
  return Ready() != wasReady;
}

}  // namespace Kest::Client::Loot
