// CollectionStatus updates one item from the player's collection: ownership, artwork and
// description of what it unlocks and, from these, whether it can be redeemed. An item whose tables
// have not arrived yet mostly keeps what it had. Threads: module tasks only.
#pragma once

#include <cstdint>

#include "loot/model/collections.h"
#include "loot/model/decision_trace.h"
#include "loot/model/game_data.h"
#include "loot/wire/loot_resources.h"

namespace Kest::Client::Loot {

class CollectionStatus {
 public:
  // Borrows both; they outlive it. An icon without a path leaves an empty entry in `gameData`.
  CollectionStatus(const Collections& collections, GameData& gameData)
      : collections_(collections), gameData_(gameData) {}

  // Runs the rule of the item's type. `trace` may be null; it gets the steps.
  void Apply(Api::PlayerLoot* item, DecisionTrace* trace = nullptr) const;

 private:
  using Rule = void (CollectionStatus::*)(Api::PlayerLoot* item, DecisionTrace* trace) const;
  struct TypeRule;
  static const TypeRule kTypeRules[];
  static const TypeRule kOtherRule;

  void ApplyChampion(Api::PlayerLoot* item, DecisionTrace* trace) const;
  void ApplySkin(Api::PlayerLoot* item, DecisionTrace* trace) const;
  void KeepAsItIs(Api::PlayerLoot* item, DecisionTrace* trace) const;
  void ApplyWardSkin(Api::PlayerLoot* item, DecisionTrace* trace) const;
  void ApplyEmote(Api::PlayerLoot* item, DecisionTrace* trace) const;
  void ApplySummonerIcon(Api::PlayerLoot* item, DecisionTrace* trace) const;
  void ApplyTournamentLogo(Api::PlayerLoot* item, DecisionTrace* trace) const;
  void ApplyBoost(Api::PlayerLoot* item, DecisionTrace* trace) const;
  void ApplyChampionToken(Api::PlayerLoot* item, DecisionTrace* trace) const;
  void ApplyOther(Api::PlayerLoot* item, DecisionTrace* trace) const;

  // The champion and its base skin; does nothing unless both are known.
  void ApplyChampionOf(int64_t championId, Api::PlayerLoot* item, DecisionTrace* trace) const;
  void ApplyDefaultArtwork(Api::PlayerLoot* item, DecisionTrace* trace) const;

  const Collections& collections_;
  GameData& gameData_;
};

}  // namespace Kest::Client::Loot
