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

void ReadCollectible(const Json& value, const CollectionLayout& layout, IssueReport& report,
                     PlatformCollections& collections) {
  FieldReader fields(value, report);
  const int64_t id = fields.Integer("id", 0, FieldReader::kMax32);
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
  fields.Finish();
  if (layout.collection == Collection::kSkins &&
      collections.Find(Collection::kChampions, ChampionOfSkin(id)) == nullptr) {
    report.Add(fields.At("id"), "no champion has the id " + std::to_string(ChampionOfSkin(id)) +
                                    " of skin " + std::to_string(id));
  }
  if (!collections[layout.collection].emplace(id, std::move(thing)).second) {
    report.Add(fields.At("id"),
               "duplicate id " + std::to_string(id) + " in \"" + std::string(layout.list) + "\"");
  }
}

}  // namespace

void ReadCollections(FieldReader& world, IssueReport& report, WorldData& data) {
  for (const CollectionLayout& layout : kLayouts) {
    for (const Json& value : world.ListOr(layout.list)) {
      ReadCollectible(value, layout, report, data.collections);
      if (report.failed()) return;
    }
  }
}

}  // namespace Kest::Host
