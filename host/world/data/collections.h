// What the player owns outside the loot inventory, and the resources in which sibling plugins
// publish it.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/json/json.h"

namespace Kest::Host {

enum class Collection {
  kChampions,
  kSkins,
  kChromas,  // in no resource; kept so that one cannot be redeemed twice
  kWardSkins,
  kSummonerIcons,
  kEmotes,
  kTournamentLogos
};
constexpr size_t kCollectionCount = 7;

struct Ownership {
  bool owned = false;
  bool rented = false;
  bool freeToPlayReward = false;

  friend bool operator==(const Ownership&, const Ownership&) = default;
};

struct Collectible {
  std::string name;
  std::string description;
  std::string tilePath;    // its picture: tile, ward, icon
  std::string splashPath;  // the large picture of a skin
  std::string shadowPath;  // the shadow of a ward skin
  Ownership ownership;
};

class PlatformCollections {
 public:
  using Table = std::map<int64_t, Collectible>;

  Table& operator[](Collection collection) { return tables_[static_cast<size_t>(collection)]; }
  const Table& operator[](Collection collection) const {
    return tables_[static_cast<size_t>(collection)];
  }
  // The entry of that id, or null.
  const Collectible* Find(Collection collection, int64_t id) const;

 private:
  std::array<Table, kCollectionCount> tables_;
};

// The collection's name in control paths: "champions", "ward-skins", ...
std::string_view CollectionName(Collection collection);
// The type of loot that turns into its members: "WARDSKIN".
std::string_view CollectionLootType(Collection collection);
std::optional<Collection> CollectionByName(std::string_view name);
// Whether things of that collection can be had for a time, or only for good.
bool CanBeRented(Collection collection);

// The collection whose members loot of that type turns into ("SKIN_RENTAL": skins), or nothing.
std::optional<Collection> CollectionOfLootType(std::string_view type);
// A skin's champion.
constexpr int64_t ChampionOfSkin(int64_t skinId) {
  return skinId / 1000;
}

// "OWNED", "RENTED", "F2P", or "NONE".
std::string_view OwnershipName(const Ownership& ownership);
Json OwnershipJson(const Ownership& ownership);

// The resources of the signed-in player, path and value, in an order fit for publication: what is
// only read comes before what is followed.
std::vector<std::pair<std::string, Json>> CollectionResources(
    const PlatformCollections& collections, uint64_t summonerId);
// The game-data lists of all icons and emotes.
Json ProfileIconsJson(const PlatformCollections& collections);
Json SummonerEmotesJson(const PlatformCollections& collections);

}  // namespace Kest::Host
