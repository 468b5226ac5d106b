// PlayerSession follows the login: while a player is connected, the player's collections are
// followed. Threads: module tasks only; it does not wait.
#pragma once

#include "loot/calls/forward.h"
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

 private:
  CollectionSources& sources_;
  NewPlayerChest& newPlayerChest_;
  bool connected_ = false;
};

}  // namespace Kest::Client::Loot
