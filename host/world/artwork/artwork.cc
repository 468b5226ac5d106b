#include "host/world/artwork/artwork.h"

#include <algorithm>

namespace Kest::Host {
namespace {

constexpr std::string_view kIconFolder = "/fe/tav-loot/assets/loot_item_icons/";
constexpr std::string_view kIconSuffix = ".png";

std::string StringOf(const Json& record, const char* name) {
  const auto found = record.find(name);
  return found != record.end() && found->is_string() ? found->get<std::string>() : "";
}

std::string FirstOf(std::string a, std::string b) {
  return a.empty() ? std::move(b) : std::move(a);
}

Artwork OfDefinition(const LootDefinition& definition, std::string name) {
  return {FirstOf(std::move(name), definition.lootName), definition.type,
          StringOf(definition.record, "rarity")};
}

const Json* DescribedItem(const WorldData& data, const std::string& lootName) {
  for (const Json& item : data.lootData["LootItems"]) {
    if (StringOf(item, "id") == lootName) return &item;
  }
  return nullptr;
}

std::optional<Artwork> FindIcon(const WorldData& data, std::string_view path) {
  if (!path.starts_with(kIconFolder) || !path.ends_with(kIconSuffix)) return std::nullopt;
  path.remove_prefix(kIconFolder.size());
  path.remove_suffix(kIconSuffix.size());
  for (const LootDefinition& definition : data.definitions) {
    if (FirstOf(StringOf(definition.record, "asset"), definition.lootName) != path) continue;
    const Json* const item = DescribedItem(data, definition.lootName);
    return OfDefinition(definition, item == nullptr ? "" : StringOf(*item, "name"));
  }
  return std::nullopt;
}

struct DescribedList {
  const char* list;
  const char* picture;  // the members of an entry
  const char* name;
  const char* type;  // of an entry that is no definition
};

constexpr DescribedList kDescribedLists[] = {
    {"LootItems", "image", "name", "LOOT"},
    {"LootRecipes", "imagePath", "contextMenuText", "RECIPE"},
    {"LootTables", "image", "description", "TABLE"}};

std::optional<Artwork> FindDescribed(const WorldData& data, std::string_view path) {
  for (const DescribedList& described : kDescribedLists) {
    for (const Json& entry : data.lootData[described.list]) {
      if (StringOf(entry, described.picture) != path) continue;
      const std::string id = StringOf(entry, "id");
      const LootDefinition* const definition = data.FindDefinition(id);
      std::string name = StringOf(entry, described.name);
      if (definition != nullptr) return OfDefinition(*definition, std::move(name));
      return Artwork{FirstOf(std::move(name), id), described.type, ""};
    }
  }
  return std::nullopt;
}

std::string RarityOf(const WorldData& data, Collection collection, int64_t id) {
  const auto found = std::find_if(
      data.definitions.begin(), data.definitions.end(), [&](const LootDefinition& definition) {
        return definition.storeItemId == id && CollectionOfLootType(definition.type) == collection;
      });
  return found == data.definitions.end() ? "" : StringOf(found->record, "rarity");
}

std::optional<Artwork> FindCollected(const WorldData& data, std::string_view path) {
  for (size_t i = 0; i < kCollectionCount; ++i) {
    const auto collection = static_cast<Collection>(i);
    for (const auto& [id, thing] : data.collections[collection]) {
      if (path != thing.tilePath && path != thing.splashPath && path != thing.shadowPath) continue;
      return Artwork{FirstOf(thing.name, std::to_string(id)),
                     std::string(CollectionLootType(collection)), RarityOf(data, collection, id)};
    }
  }
  return std::nullopt;
}

}  // namespace

std::optional<Artwork> FindArtwork(const WorldData& data, std::string_view path) {
  if (path.empty()) return std::nullopt;  // what has no picture names this one
  if (auto found = FindCollected(data, path)) return found;
  if (auto found = FindDescribed(data, path)) return found;
  return FindIcon(data, path);
}

}  // namespace Kest::Host
