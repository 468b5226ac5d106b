// Names, descriptions and artwork from the game data: the loot definition file, the summoner icon
// paths and the emotes, each empty until its load succeeds. Threads: module tasks only.
// Lifetime: pointers are valid until the next replacement.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "loot/model/id_table.h"
#include "loot/model/keyed_list.h"
#include "loot/wire/sibling_resources.h"

namespace Kest::Client::Loot {

class GameData {
 public:
  // Takes the three lists of the loot definition file, each in the file's order.
  void ReplaceLoot(Api::LootDataGdsResource file);
  void ReplaceIcons(std::vector<Api::GameDataSummonerIcon> records);
  void ReplaceEmotes(std::vector<Api::GameDataSummonerEmote> records);

  // Grows with each replacement.
  uint64_t revision() const { return revision_; }

  // Null when the file holds no entry of that id; of equal ids the first is found.
  const Api::LootItemGdsResource* FindLootItem(std::string_view id) const;
  const Api::LootRecipeGdsResource* FindLootRecipe(std::string_view id) const;
  const Api::LootTableGdsResource* FindLootTable(std::string_view id) const;
  // Null for an unknown emote.
  const Api::GameDataSummonerEmote* FindEmote(int64_t id) const;

  // The icon's path. An unknown id gets an empty entry, which is kept.
  const std::string& GetOrAddIconPath(int32_t id);

  const IdTable<int32_t, std::string>& iconPaths() const { return iconPaths_; }

 private:
  uint64_t revision_ = 0;
  KeyedList<Api::LootItemGdsResource, &Api::LootItemGdsResource::id> lootItems_;
  KeyedList<Api::LootRecipeGdsResource, &Api::LootRecipeGdsResource::id> lootRecipes_;
  KeyedList<Api::LootTableGdsResource, &Api::LootTableGdsResource::id> lootTables_;
  IdTable<int32_t, std::string> iconPaths_;
  IdTable<int64_t, Api::GameDataSummonerEmote> emotes_;
};

}  // namespace Kest::Client::Loot
