#include "loot/player_session.h"

#include "loot/calls/collection_sources.h"
#include "loot/calls/new_player_chest.h"

namespace Kest::Client::Loot {

void PlayerSession::OnLoginSession(const Api::LoginSession& session) {
  const bool isConnected = session.state == Api::LoginSessionStates::kSucceeded &&
                           session.accountId != 0 && session.summonerId != 0;
  if (isConnected && !connected_) {
    newPlayerChest_.BeginPeriod();
    sources_.Follow(session.summonerId);
    newPlayerChest_.Schedule();
  }
  connected_ = isConnected;
}

void PlayerSession::OnLoginSessionDeleted() {
  sources_.Drop();
  connected_ = false;
}

}  // namespace Kest::Client::Loot
