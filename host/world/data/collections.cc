#include "host/world/data/collections.h"

namespace Kest::Host {
namespace {

struct CollectionWords {
  std::string_view name;
  std::string_view lootType;
  bool canBeRented;
};

// Indexed by Collection.
constexpr std::array<CollectionWords, kCollectionCount> kWords = {{
    {"champions", "CHAMPION", true},
    {"skins", "SKIN", true},
    {"chromas", "CHROMA", true},
    {"ward-skins", "WARDSKIN", true},
    {"summoner-icons", "SUMMONERICON", false},
    {"emotes", "EMOTE", true},
    {"tournament-logos", "TOURNAMENTLOGO", false},
}};

const CollectionWords& WordsOf(Collection collection) {
  return kWords[static_cast<size_t>(collection)];
}

Json ChampionsJson(const PlatformCollections& collections) {
  const PlatformCollections::Table& skins = collections[Collection::kSkins];
  Json champions = Json::array();
  for (const auto& [id, champion] : collections[Collection::kChampions]) {
    Json ownSkins = Json::array();
    for (auto skin = skins.lower_bound(id * 1000);
         skin != skins.end() && ChampionOfSkin(skin->first) == id; ++skin) {
      ownSkins.push_back(
          Json{{"id", skin->first}, {"ownership", OwnershipWord(skin->second.ownership)}});
    }
    // With the skins, so that a change of a skin is a change of the champions too.
    champions.push_back(Json{{"id", id},
                             {"name", champion.name},
                             {"ownership", OwnershipJson(champion.ownership)},
                             {"skins", std::move(ownSkins)}});
  }
  return champions;
}

Json SkinsJson(const PlatformCollections& collections) {
  Json skins = Json::array();
  for (const auto& [id, skin] : collections[Collection::kSkins]) {
    skins.push_back(Json{{"championId", ChampionOfSkin(id)},
                         {"id", id},
                         {"name", skin.name},
                         {"ownership", OwnershipJson(skin.ownership)},
                         {"splashPath", skin.splashPath},
                         {"tilePath", skin.tilePath}});
  }
  return skins;
}

Json WardSkinsJson(const PlatformCollections& collections) {
  Json wardSkins = Json::array();
  for (const auto& [id, wardSkin] : collections[Collection::kWardSkins]) {
    wardSkins.push_back(Json{{"id", id},
                             {"name", wardSkin.name},
                             {"ownership", OwnershipJson(wardSkin.ownership)},
                             {"wardImagePath", wardSkin.tilePath},
                             {"wardShadowImagePath", wardSkin.shadowPath}});
  }
  return wardSkins;
}

Json OwnedIconsJson(const PlatformCollections& collections) {
  Json icons = Json::array();
  for (const auto& [id, icon] : collections[Collection::kSummonerIcons]) {
    if (icon.ownership.owned) icons.push_back(id);
  }
  return Json{{"icons", std::move(icons)}};
}

Json HeldEmotesJson(const PlatformCollections& collections) {
  Json emotes = Json::array();
  for (const auto& [id, emote] : collections[Collection::kEmotes]) {
    if (emote.ownership == Ownership{}) continue;
    emotes.push_back(Json{{"itemId", id}, {"ownershipType", OwnershipWord(emote.ownership)}});
  }
  return emotes;
}

}  // namespace

const Collectible* PlatformCollections::Find(Collection collection, int64_t id) const {
  const Table& table = (*this)[collection];
  const auto found = table.find(id);
  return found == table.end() ? nullptr : &found->second;
}

std::string_view CollectionName(Collection collection) {
  return WordsOf(collection).name;
}

std::optional<Collection> CollectionByName(std::string_view name) {
  for (size_t i = 0; i < kWords.size(); ++i) {
    if (kWords[i].name == name) return static_cast<Collection>(i);
  }
  return std::nullopt;
}

bool CanBeRented(Collection collection) {
  return WordsOf(collection).canBeRented;
}

std::optional<Collection> CollectionOfLootType(std::string_view type) {
  constexpr std::string_view kRental = "_RENTAL";
  const bool isRental = type.ends_with(kRental);
  if (isRental) type.remove_suffix(kRental.size());
  for (size_t i = 0; i < kWords.size(); ++i) {
    if (kWords[i].lootType == type && (!isRental || kWords[i].canBeRented)) {
      return static_cast<Collection>(i);
    }
  }
  return std::nullopt;
}

std::string_view OwnershipWord(const Ownership& ownership) {
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
  return {{champions + "/skins-minimal", SkinsJson(collections)},
          {champions + "/champions-minimal", ChampionsJson(collections)},
          {others + "/ward-skins", WardSkinsJson(collections)},
          {others + "/summoner-icons", OwnedIconsJson(collections)},
          {"/tav-inventory/v1/inventory/emotes", HeldEmotesJson(collections)}};
}

Json ProfileIconsJson(const PlatformCollections& collections) {
  Json icons = Json::array();
  for (const auto& [id, icon] : collections[Collection::kSummonerIcons]) {
    icons.push_back(Json{{"id", id}, {"iconPath", icon.tilePath}});
  }
  return icons;
}

Json SummonerEmotesJson(const PlatformCollections& collections) {
  Json emotes = Json::array();
  for (const auto& [id, emote] : collections[Collection::kEmotes]) {
    emotes.push_back(Json{{"id", id},
                          {"name", emote.name},
                          {"inventoryIcon", emote.tilePath},
                          {"description", emote.description}});
  }
  return emotes;
}

}  // namespace Kest::Host
