#include "host/world/loot/loot_definitions_json.h"

namespace Kest::Host {
namespace {

// The records of those definitions or recipes.
template <typename Items>
Json RecordsJson(const Items& items) {
  Json list = Json::array();
  for (const auto& item : items) list.push_back(item.record);
  return list;
}

// One part with its version; its content only when the caller holds another version.
template <typename Make>
Json Part(const char* name, Json empty, int64_t version, int64_t known, Make make) {
  return Json{{name, version == known ? std::move(empty) : make()}, {"lastUpdate", version}};
}

}  // namespace

Json PlayerLootDefinitionsJson(const WorldData& data, const Inventory& inventory,
                               const DefinitionVersions& known) {
  const auto definitions = [&] { return RecordsJson(data.definitions); };
  const auto recipes = [&] { return RecordsJson(data.recipes); };
  const auto queries = [&] { return data.queries; };
  return Json{
      {"lootItemList",
       Part("lootItems", Json::array(), data.versions.lootItems, known.lootItems, definitions)},
      {"recipeList", Part("recipes", Json::array(), data.versions.recipes, known.recipes, recipes)},
      {"queryResult",
       Part("queryToLootNames", Json::object(), data.versions.queries, known.queries, queries)},
      {"playerLoot", InventoryJson(inventory)}};
}

}  // namespace Kest::Host
