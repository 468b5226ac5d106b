#include "loot/calls/player_session.h"

#include "loot/calls/collection_sources.h"
#include "loot/calls/new_player_chest.h"

namespace Kest::Client::Loot {

Conditions<4> PlayerSession::ConditionsOf(const std::optional<Api::LoginSession>& session) {
  const Api::LoginSession known = session.value_or(Api::LoginSession{});
  return {{{"hasSession", session.has_value(), "There is a login session.",
            "There is no login session."},
           {"isSignedIn", known.state == Api::LoginSessionStates::kSucceeded,
            "The session's state is SUCCEEDED.", "The session's state is not SUCCEEDED."},
           {"hasAccount", known.accountId != 0, "The session has an account id.",
            "The session has no account id."},
           {"hasSummoner", known.summonerId != 0, "The session has a summoner id.",
            "The session has no summoner id."}}};
}

void PlayerSession::OnLoginSession(const Api::LoginSession& session) {
  const bool wasConnected = AllHold(ConditionsOf(session_));
  if (AllHold(ConditionsOf(session)) && !wasConnected) {
    newPlayerChest_.BeginPeriod();
    sources_.Follow(session.summonerId);
    newPlayerChest_.Schedule();
  }
  session_ = session;
}

void PlayerSession::OnLoginSessionDeleted() {
  sources_.Drop();
  session_.reset();
}

}  // namespace Kest::Client::Loot
