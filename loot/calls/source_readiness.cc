#include "loot/calls/source_readiness.h"

#include "client/sibling_client.h"
#include "log/logger.h"
#include "loot/calls/loot_publisher.h"
#include "loot/state/loot_inventory.h"

namespace Kest::Client::Loot {

void SourceReadiness::OnSourceRead(uint8_t bits) {
  inventory_.ReassembleAll();
  publisher_.Request();
  Set(bits, goal_);
}

void SourceReadiness::Set(uint8_t bits, uint8_t goal) {
  goal_ = goal;
  flags_ = static_cast<uint8_t>(flags_ | bits);
  LogAlways("Loot %s: %hhu/%hhu", Ready() ? "ready" : "not yet ready", flags_, goal_);
  if (Ready() == isKnownReady_) return;
  const ResourceChange change =
      client_.MakeChange("/tav-loot/v1/ready", ResourceEventType::kUpdate, Ready());
  isKnownReady_ = Ready();
  client_.Publish(change);
}

}  // namespace Kest::Client::Loot
