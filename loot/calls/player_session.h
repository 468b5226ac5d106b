// PlayerSession follows the login: while a player is connected, the player's collections are
// followed. Threads: module tasks only; it does not wait.
#pragma once

#include <optional>

#include "loot/calls/forward.h"
#include "loot/model/condition.h"
#include "loot/wire/sibling_resources.h"

namespace Kest::Client::Loot {

class PlayerSession {
 public:
  // Both outlive it.
  PlayerSession(CollectionSources& sources, NewPlayerChest& newPlayerChest)
      : sources_(sources), newPlayerChest_(newPlayerChest) {}

  // On becoming connected, follows the collections and schedules the new-player check. Losing the
  // connection keeps following: only the end of the session stops it.
  void OnLoginSession(const Api::LoginSession& session);
  void OnLoginSessionDeleted();

  // What a connected player needs.
  Conditions<4> ConnectedConditions() const { return ConditionsOf(session_); }

 private:
  static Conditions<4> ConditionsOf(const std::optional<Api::LoginSession>& session);

  CollectionSources& sources_;
  NewPlayerChest& newPlayerChest_;
  std::optional<Api::LoginSession> session_;  // nothing: there is none
};

}  // namespace Kest::Client::Loot
