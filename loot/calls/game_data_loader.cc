#include "loot/calls/game_data_loader.h"

#include <utility>
#include <vector>

#include "client/sibling_client.h"
#include "log/logger.h"

namespace Kest::Client::Loot {
namespace {

constexpr const char* kLootDefinitionsPath = "/tav-game-data/assets/v1/loot.json";

}  // namespace

void GameDataLoader::LoadAll() {
  LoadList("/tav-game-data/assets/v1/profile-icons.json", &GameData::ReplaceIcons);
  LoadLootDefinitions();
  LoadList("/tav-game-data/assets/v1/summoner-emotes.json", &GameData::ReplaceEmotes);
}

template <class Records>
void GameDataLoader::LoadList(const char* path, void (GameData::*replace)(Records records)) {
  Maybe<Records> records = client_.Request<Records>(HttpMethod::kGet, path);
  if (!records) {
    return LogError("Failed to retrieve %s with error %s", path, records.GetFailure().text.c_str());
  }
  (gameData_.*replace)(std::move(records.GetValue()));
}

void GameDataLoader::LoadLootDefinitions() {
  Maybe<Api::LootDataGdsResource> file =
      client_.Request<Api::LootDataGdsResource>(HttpMethod::kGet, kLootDefinitionsPath);
  if (!file) return LogError("Unable to load loot localization data.");
  gameData_.ReplaceLoot(std::move(file.GetValue()));
}

}  // namespace Kest::Client::Loot
