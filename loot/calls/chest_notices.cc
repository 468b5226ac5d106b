#include "loot/calls/chest_notices.h"

#include "client/sibling_client.h"

namespace Kest::Client::Loot {

void ChestNotices::Update(const Api::PlayerLoot& item) {
  if (notifications_.Update(item)) Publish();
}

std::string ChestNotices::Acknowledge(const std::string& id) {
  if (!notifications_.Acknowledge(id)) return "NOT_FOUND";
  Publish();
  return "ACKNOWLEDGED";
}

void ChestNotices::Publish() {
  client_.Publish("/tav-loot/v1/player-loot-notifications", ResourceEventType::kUpdate, List());
}

}  // namespace Kest::Client::Loot
