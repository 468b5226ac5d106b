// Loads names and artwork out of the game data, once, when the plugin starts. Each load fails
// alone: it logs one error line, leaves its table as it was, and is not repeated. Threads: module
// tasks only; the calls wait.
#pragma once

#include <string>

#include "loot/model/game_data.h"

namespace Kest::Client {
class SiblingClient;
}  // namespace Kest::Client

namespace Kest::Client::Loot {

class GameDataLoader {
 public:
  // Both outlive the loader.
  GameDataLoader(SiblingClient& client, GameData& gameData)
      : client_(client), gameData_(gameData) {}

  void LoadProfileIcons();
  // Items, recipes and tables of the loot definition file at `path`.
  void LoadLootDefinitions(const std::string& path);
  void LoadSummonerEmotes();

 private:
  SiblingClient& client_;
  GameData& gameData_;
};

}  // namespace Kest::Client::Loot
