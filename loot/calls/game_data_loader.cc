#include "loot/calls/game_data_loader.h"

#include <utility>
#include <vector>

#include "client/sibling_client.h"
#include "log/logger.h"

namespace Kest::Client::Loot {
namespace {

constexpr const char* kProfileIconsPath = "/tav-game-data/assets/v1/profile-icons.json";
constexpr const char* kSummonerEmotesPath = "/tav-game-data/assets/v1/summoner-emotes.json";

void LogFailedLoad(const char* path, const Failure& failure) {
  LogError("Failed to retrieve %s with error %s", path, failure.text.c_str());
}

}  // namespace

void GameDataLoader::LoadProfileIcons() {
  using Records = std::vector<Api::GameDataSummonerIcon>;
  Maybe<Records> records = client_.Request<Records>(HttpMethod::kGet, kProfileIconsPath);
  if (!records) return LogFailedLoad(kProfileIconsPath, records.GetFailure());
  gameData_.ReplaceIcons(std::move(records.GetValue()));
}

void GameDataLoader::LoadLootDefinitions(const std::string& path) {
  Maybe<Api::LootDataGdsResource> file =
      client_.Request<Api::LootDataGdsResource>(HttpMethod::kGet, path);
  if (!file) return LogError("Unable to load loot localization data.");
  gameData_.ReplaceLoot(std::move(file.GetValue()));
}

void GameDataLoader::LoadSummonerEmotes() {
  using Records = std::vector<Api::GameDataSummonerEmote>;
  Maybe<Records> records = client_.Request<Records>(HttpMethod::kGet, kSummonerEmotesPath);
  if (!records) return LogFailedLoad(kSummonerEmotesPath, records.GetFailure());
  gameData_.ReplaceEmotes(std::move(records.GetValue()));
}

}  // namespace Kest::Client::Loot
