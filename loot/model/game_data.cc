#include "loot/model/game_data.h"

#include <utility>

namespace Kest::Client::Loot {

void GameData::ReplaceLoot(Api::LootDataGdsResource file) {
  lootItems_.Replace(std::move(file.LootItems));
  lootRecipes_.Replace(std::move(file.LootRecipes));
  lootTables_.Replace(std::move(file.LootTables));
  ++revision_;
}

void GameData::ReplaceIcons(std::vector<Api::GameDataSummonerIcon> records) {
  RefillTable(std::move(records), &Api::GameDataSummonerIcon::id, &iconPaths_,
              [](Api::GameDataSummonerIcon&& icon) { return std::move(icon.iconPath); });
  ++revision_;
}

void GameData::ReplaceEmotes(std::vector<Api::GameDataSummonerEmote> records) {
  RefillTable(std::move(records), &Api::GameDataSummonerEmote::id, &emotes_);
  ++revision_;
}

const Api::LootItemGdsResource* GameData::FindLootItem(std::string_view id) const {
  return lootItems_.Find(id);
}

const Api::LootRecipeGdsResource* GameData::FindLootRecipe(std::string_view id) const {
  return lootRecipes_.Find(id);
}

const Api::LootTableGdsResource* GameData::FindLootTable(std::string_view id) const {
  return lootTables_.Find(id);
}

const Api::GameDataSummonerEmote* GameData::FindEmote(int64_t id) const {
  return FindById(emotes_, id);
}

const std::string& GameData::GetOrAddIconPath(int32_t id) {
  return iconPaths_[id];
}

}  // namespace Kest::Client::Loot
