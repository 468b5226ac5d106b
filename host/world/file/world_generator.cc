#include "host/world/file/world_generator.h"

#include <array>
#include <string_view>

#include "host/json/json.h"
#include "host/world/data/seeded_random.h"

namespace Kest::Host {
namespace {

constexpr int64_t kFirstId = 1000;
constexpr int64_t kItemsPerChampion = 40;

// A kind of item, and the collection in which the thing it is for gets an entry. An empty list: it
// is for no such thing.
struct ItemKind {
  std::string_view type;
  std::string_view list;
  std::string_view picture;  // the member for it
};
constexpr ItemKind kKinds[] = {
    {"SKIN_RENTAL", "skins", "tilePath"},
    {"SKIN", "skins", "tilePath"},
    {"SKIN_RENTAL", "skins", "tilePath"},
    {"EMOTE", "emotes", "inventoryIcon"},
    {"SKIN", "skins", "tilePath"},
    {"WARDSKIN_RENTAL", "wardSkins", "wardImagePath"},
    {"SKIN_RENTAL", "skins", "tilePath"},
    {"SUMMONERICON", "summonerIcons", "iconPath"},
    {"EMOTE_RENTAL", "emotes", "inventoryIcon"},
    {"MATERIAL", "", ""},
};

constexpr std::array<std::string_view, 16> kFirstWords = {
    "Amber", "Brine", "Cobalt", "Dusk",  "Ember", "Frost", "Gale",  "Hollow",
    "Ivory", "Jade",  "Kelp",   "Lunar", "Moss",  "Night", "Ochre", "Pearl"};
constexpr std::array<std::string_view, 16> kSecondWords = {
    "Anchor", "Beacon", "Compass", "Drifter", "Envoy",   "Ferry",  "Gull",    "Herald",
    "Island", "Jetty",  "Keeper",  "Lantern", "Mariner", "Netter", "Oarsman", "Pilot"};
constexpr std::array<std::string_view, 5> kRarities = {"DEFAULT", "DEFAULT", "EPIC", "LEGENDARY",
                                                       "MYTHIC"};

class Generator {
 public:
  Generator(int64_t items, uint64_t seed)
      : random_(seed), champions_(items / kItemsPerChampion + 1) {
    for (const char* const list :
         {"champions", "skins", "wardSkins", "summonerIcons", "emotes", "definitions"}) {
      world_[list] = Json::array();
    }
    for (int64_t i = 0; i < champions_; ++i) AddChampion(kFirstId + i);
    for (int64_t i = 0; i < items; ++i) AddItem(i);
    world_["player"] = Json{{"inventory", std::move(inventory_)}};
    world_["lootData"] = Json{{"LootItems", std::move(texts_)}};
  }

  std::string Text() const { return WriteJson(world_); }

 private:
  template <typename Words>
  std::string Pick(const Words& words) {
    return std::string(words[random_.Below(words.size())]);
  }
  std::string Name(int64_t number) {
    return Pick(kFirstWords) + " " + Pick(kSecondWords) + " " + std::to_string(number);
  }

  void AddChampion(int64_t id) {
    const std::string name = Name(id);
    world_["champions"].push_back(
        Json{{"id", id}, {"name", name}, {"owned", random_.Below(3) != 0}});
    world_["skins"].push_back(Json{{"id", id * 1000}, {"name", name}, {"owned", true}});
  }

  // The id of the `number`th item's thing: no two of a collection are the same.
  int64_t IdOf(const ItemKind& kind, int64_t number) const {
    if (kind.list != "skins") return kFirstId + number;
    return (kFirstId + number % champions_) * 1000 + 1 + number / champions_;
  }

  void AddThing(const ItemKind& kind, int64_t id, const std::string& name) {
    Json thing = Json{{"id", id}, {"name", name}};
    thing[std::string(kind.picture)] =
        "/tav-game-data/assets/art/" + std::string(kind.list) + "/" + std::to_string(id) + ".png";
    if (random_.Below(4) == 0) thing["owned"] = true;
    if (kind.type.ends_with("_RENTAL") && random_.Below(8) == 0) thing["rented"] = true;
    world_[std::string(kind.list)].push_back(std::move(thing));
  }

  void AddItem(int64_t number) {
    const ItemKind& kind = kKinds[static_cast<size_t>(number) % std::size(kKinds)];
    const int64_t id = IdOf(kind, number);
    const std::string lootName = std::string(kind.type) + "_" + std::to_string(id);
    const std::string name = Name(id);
    Json definition = Json{{"lootName", lootName},
                           {"type", kind.type},
                           {"rarity", Pick(kRarities)},
                           {"value", 50 * (1 + static_cast<int64_t>(random_.Below(40)))}};
    if (kind.list.empty()) {
      texts_.push_back(Json{{"id", lootName}, {"name", name}, {"type", "Material"}});
    } else {
      definition["storeItemId"] = id;
      AddThing(kind, id, name);
    }
    world_["definitions"].push_back(std::move(definition));
    inventory_.push_back(Json{{"lootName", lootName}, {"count", 1 + random_.Below(5)}});
  }

  SeededRandom random_;
  const int64_t champions_;
  Json world_ = Json::object();
  Json inventory_ = Json::array();
  Json texts_ = Json::array();
};

}  // namespace

std::string GeneratedWorld(int64_t items, uint64_t seed) {
  return Generator(items, seed).Text();
}

}  // namespace Kest::Host
