// GameDataLoader loads names and artwork from the game data. Each load fails alone: it logs one
// line, leaves its table as it was, and is not repeated. Threads: module tasks only; LoadAll waits.
#pragma once

#include "loot/calls/forward.h"
#include "loot/model/game_data.h"

namespace Kest::Client::Loot {

class GameDataLoader {
 public:
  // Both outlive the loader.
  GameDataLoader(SiblingClient& client, GameData& gameData)
      : client_(client), gameData_(gameData) {}

  // The profile icons, the loot definition file, and the emotes, in this order.
  void LoadAll();

 private:
  template <class Records>
  void LoadList(const char* path, void (GameData::*replace)(Records records));
  void LoadLootDefinitions();

  SiblingClient& client_;
  GameData& gameData_;
};

}  // namespace Kest::Client::Loot
