// The collections of a world file: champions, skins, ward skins, icons, emotes, logos.
#include <string>

#include "host/world/file/world_sections.h"

namespace Kest::Host {
namespace {

// How one collection is written in the file. An empty field name: such things have none.
struct CollectionLayout {
  std::string_view list;
  Collection collection;
  std::string_view tilePath;
  std::string_view splashPath;
  std::string_view shadowPath;
  bool hasDescription;
};

constexpr CollectionLayout kLayouts[] = {
    {"champions", Collection::kChampions, "", "", "", false},
    {"skins", Collection::kSkins, "tilePath", "splashPath", "", false},
    {"chromas", Collection::kChromas, "", "", "", false},
    {"wardSkins", Collection::kWardSkins, "wardImagePath", "", "wardShadowImagePath", false},
    {"summonerIcons", Collection::kSummonerIcons, "iconPath", "", "", false},
    {"emotes", Collection::kEmotes, "inventoryIcon", "", "", true},
    {"tournamentLogos", Collection::kTournamentLogos, "", "", "", false},
};

std::string OptionalText(FieldReader& fields, std::string_view name) {
  return name.empty() ? std::string() : fields.StringOr(name, "");
}

void ReadCollectible(FieldReader& fields, const CollectionLayout& layout,
                     PlatformCollections& collections) {
  const int64_t id = fields.Integer("id", 0, kMax32);
  Collectible thing;
  // A redeemed chroma is known by its id alone.
  const bool isChroma = layout.collection == Collection::kChromas;
  thing.name = isChroma ? fields.StringOr("name", "") : fields.String("name");
  thing.tilePath = OptionalText(fields, layout.tilePath);
  thing.splashPath = OptionalText(fields, layout.splashPath);
  thing.shadowPath = OptionalText(fields, layout.shadowPath);
  if (layout.hasDescription) thing.description = fields.StringOr("description", "");
  thing.ownership.owned = fields.BoolOr("owned", false);
  if (CanBeRented(layout.collection)) {
    thing.ownership.rented = fields.BoolOr("rented", false);
    thing.ownership.freeToPlayReward = fields.BoolOr("freeToPlayReward", false);
  }
  if (layout.collection == Collection::kSkins &&
      collections.Find(Collection::kChampions, ChampionOfSkin(id)) == nullptr) {
    fields.FailAt("id", "no champion has the id " + std::to_string(ChampionOfSkin(id)) +
                            " of skin " + std::to_string(id));
  }
  if (!collections[layout.collection].emplace(id, std::move(thing)).second) {
    fields.FailAt(
        "id", "duplicate id " + std::to_string(id) + " in \"" + std::string(layout.list) + "\"");
  }
}

void WriteText(Json& entry, std::string_view name, const std::string& text) {
  if (!name.empty() && !text.empty()) entry.push_back({std::string(name), text});
}

Json CollectibleJson(const CollectionLayout& layout, int64_t id, const Collectible& thing) {
  Json entry = Json{{"id", id}};
  WriteText(entry, "name", thing.name);
  WriteText(entry, "description", layout.hasDescription ? thing.description : "");
  WriteText(entry, layout.tilePath, thing.tilePath);
  WriteText(entry, layout.splashPath, thing.splashPath);
  WriteText(entry, layout.shadowPath, thing.shadowPath);
  if (thing.ownership.owned) entry["owned"] = true;
  if (thing.ownership.rented) entry["rented"] = true;
  if (thing.ownership.freeToPlayReward) entry["freeToPlayReward"] = true;
  return entry;
}

}  // namespace

void WriteCollections(const PlatformCollections& collections, Json& world) {
  for (const CollectionLayout& layout : kLayouts) {
    Json list = Json::array();
    for (const auto& [id, thing] : collections[layout.collection]) {
      list.push_back(CollectibleJson(layout, id, thing));
    }
    world[std::string(layout.list)] = std::move(list);
  }
}

void ReadCollections(FieldReader& world, WorldData& data) {
  for (const CollectionLayout& layout : kLayouts) {
    world.ForEach(layout.list,
                  [&](FieldReader& fields) { ReadCollectible(fields, layout, data.collections); });
  }
}

}  // namespace Kest::Host
