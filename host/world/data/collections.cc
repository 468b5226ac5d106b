#include "host/world/data/collections.h"

namespace Kest::Host {
namespace {

struct CollectionNames {
  std::string_view name;
  std::string_view lootType;
  bool canBeRented;
};

// Indexed by Collection.
constexpr std::array<CollectionNames, kCollectionCount> kNames = {{
    {"champions", "CHAMPION", true},
    {"skins", "SKIN", true},
    {"chromas", "CHROMA", true},
    {"ward-skins", "WARDSKIN", true},
    {"summoner-icons", "SUMMONERICON", false},
    {"emotes", "EMOTE", true},
    {"tournament-logos", "TOURNAMENTLOGO", false},
}};

const CollectionNames& NamesOf(Collection collection) {
  return kNames[static_cast<size_t>(collection)];
}

// What `describe` makes of each entry of a collection, by id; an entry of which it makes null is
// left out.
template <typename Describe>
Json ListOf(const PlatformCollections::Table& table, Describe describe) {
  Json list = Json::array();
  for (const auto& [id, thing] : table) {
    if (Json entry = describe(id, thing); !entry.is_null()) list.push_back(std::move(entry));
  }
  return list;
}

Json ChampionsJson(const PlatformCollections& collections) {
  const PlatformCollections::Table& skins = collections[Collection::kSkins];
  return ListOf(collections[Collection::kChampions], [&](int64_t id, const Collectible& champion) {
    Json ownSkins = Json::array();
    for (auto skin = skins.lower_bound(id * 1000);
         skin != skins.end() && ChampionOfSkin(skin->first) == id; ++skin) {
      ownSkins.push_back(
          Json{{"id", skin->first}, {"ownership", OwnershipName(skin->second.ownership)}});
    }
    // With the skins, so that a change of a skin is a change of the champions too.
    return Json{{"id", id},
                {"name", champion.name},
                {"ownership", OwnershipJson(champion.ownership)},
                {"skins", std::move(ownSkins)}};
  });
}

Json SkinJson(int64_t id, const Collectible& skin) {
  return Json{{"championId", ChampionOfSkin(id)},
              {"id", id},
              {"name", skin.name},
              {"ownership", OwnershipJson(skin.ownership)},
              {"splashPath", skin.splashPath},
              {"tilePath", skin.tilePath}};
}

Json WardSkinJson(int64_t id, const Collectible& wardSkin) {
  return Json{{"id", id},
              {"name", wardSkin.name},
              {"ownership", OwnershipJson(wardSkin.ownership)},
              {"wardImagePath", wardSkin.tilePath},
              {"wardShadowImagePath", wardSkin.shadowPath}};
}

Json OwnedIconJson(int64_t id, const Collectible& icon) {
  return icon.ownership.owned ? Json(id) : Json();
}

Json HeldEmoteJson(int64_t id, const Collectible& emote) {
  if (emote.ownership == Ownership{}) return Json();
  return Json{{"itemId", id}, {"ownershipType", OwnershipName(emote.ownership)}};
}

}  // namespace

const Collectible* PlatformCollections::Find(Collection collection, int64_t id) const {
  const Table& table = (*this)[collection];
  const auto found = table.find(id);
  return found == table.end() ? nullptr : &found->second;
}

std::string_view CollectionName(Collection collection) {
  return NamesOf(collection).name;
}

std::string_view CollectionLootType(Collection collection) {
  return NamesOf(collection).lootType;
}

std::optional<Collection> CollectionByName(std::string_view name) {
  for (size_t i = 0; i < kNames.size(); ++i) {
    if (kNames[i].name == name) return static_cast<Collection>(i);
  }
  return std::nullopt;
}

bool CanBeRented(Collection collection) {
  return NamesOf(collection).canBeRented;
}

std::optional<Collection> CollectionOfLootType(std::string_view type) {
  constexpr std::string_view kRental = "_RENTAL";
  const bool isRental = type.ends_with(kRental);
  if (isRental) type.remove_suffix(kRental.size());
  for (size_t i = 0; i < kNames.size(); ++i) {
    if (kNames[i].lootType == type && (!isRental || kNames[i].canBeRented)) {
      return static_cast<Collection>(i);
    }
  }
  return std::nullopt;
}

std::string_view OwnershipName(const Ownership& ownership) {
  if (ownership.owned) return "OWNED";
  if (ownership.rented) return "RENTED";
  return ownership.freeToPlayReward ? "F2P" : "NONE";
}

Json OwnershipJson(const Ownership& ownership) {
  return Json{{"freeToPlayReward", ownership.freeToPlayReward},
              {"owned", ownership.owned},
              {"rental", Json{{"rented", ownership.rented}}}};
}

std::vector<std::pair<std::string, Json>> CollectionResources(
    const PlatformCollections& collections, uint64_t summonerId) {
  const std::string id = std::to_string(summonerId);
  const std::string champions = "/tav-champions/v1/inventories/" + id;
  const std::string others = "/tav-collections/v1/inventories/" + id;
  return {{champions + "/skins-minimal", ListOf(collections[Collection::kSkins], SkinJson)},
          {champions + "/champions-minimal", ChampionsJson(collections)},
          {others + "/ward-skins", ListOf(collections[Collection::kWardSkins], WardSkinJson)},
          {others + "/summoner-icons",
           Json{{"icons", ListOf(collections[Collection::kSummonerIcons], OwnedIconJson)}}},
          {"/tav-inventory/v1/inventory/emotes",
           ListOf(collections[Collection::kEmotes], HeldEmoteJson)}};
}

Json ProfileIconsJson(const PlatformCollections& collections) {
  return ListOf(collections[Collection::kSummonerIcons], [](int64_t id, const Collectible& icon) {
    return Json{{"id", id}, {"iconPath", icon.tilePath}};
  });
}

Json SummonerEmotesJson(const PlatformCollections& collections) {
  return ListOf(collections[Collection::kEmotes], [](int64_t id, const Collectible& emote) {
    return Json{{"id", id},
                {"name", emote.name},
                {"inventoryIcon", emote.tilePath},
                {"description", emote.description}};
  });
}

}  // namespace Kest::Host
