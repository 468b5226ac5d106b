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
  thing.name = fields.String("name");
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

}  // namespace

void ReadCollections(FieldReader& world, WorldData& data) {
  for (const CollectionLayout& layout : kLayouts) {
    world.ForEach(layout.list,
                  [&](FieldReader& fields) { ReadCollectible(fields, layout, data.collections); });
  }
}

}  // namespace Kest::Host
