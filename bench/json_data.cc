#include "bench/json_data.h"

#include <cstdlib>
#include <random>
#include <string_view>

#include "binding/json/json_adapter.h"
#include "loot/wire/dto_class_names.h"
#include "loot/wire/register_resources.h"

namespace Kest::Bench {
namespace {

using namespace Client::Loot::SVDS;

constexpr size_t kDefinitions = 5000;
constexpr size_t kRecipes = 2000;
constexpr size_t kItems = 5000;

constexpr std::string_view kTypes[] = {"CHEST",    "CHAMPION_RENTAL", "SKIN_RENTAL", "WARDSKIN",
                                       "EMOTE",    "CURRENCY",        "MATERIAL",    "STATSTONE",
                                       "CHAMPION", "SUMMONERICON"};
constexpr std::string_view kRarities[] = {"DEFAULT", "EPIC", "LEGENDARY", "MYTHIC", "ULTIMATE"};
constexpr std::string_view kRecipeTypes[] = {"OPEN", "DISENCHANT", "UPGRADE", "REROLL", "FORGE"};
constexpr std::string_view kWords[] = {"ember",  "harbour",    "lantern",   "\u00e9clat",
                                       "thorn",  "\"gilded\"", "willow",    "cinder",
                                       "meadow", "tide",       "r\u00fcne", "frost"};

class Draw {
 public:
  explicit Draw(uint32_t seed) : engine_(seed) {}

  // 0 to `end` - 1.
  int32_t Below(int32_t end) {
    return static_cast<int32_t>(engine_() % static_cast<uint32_t>(end));
  }
  template <size_t size>
  std::string OneOf(const std::string_view (&list)[size]) {
    return std::string(list[static_cast<size_t>(Below(size))]);
  }
  std::string Sentence(int words) {
    std::string text;
    for (int i = 0; i < words; ++i) {
      if (i > 0) text += ' ';
      text += OneOf(kWords);
    }
    return text;
  }
  std::string LootName() { return OneOf(kTypes) + "_" + std::to_string(Below(kDefinitions)); }

 private:
  std::mt19937 engine_;
};

LootItemClientDTO MakeDefinition(Draw& draw, size_t number) {
  LootItemClientDTO item;
  item.type = draw.OneOf(kTypes);
  item.lootName = item.type + "_" + std::to_string(number);
  item.asset = "assets/loot/" + item.lootName + ".png";
  item.rarity = draw.OneOf(kRarities);
  item.value = draw.Below(3000);
  item.storeItemId = draw.Below(500000);
  item.upgradeLootName = draw.Below(2) == 0 ? draw.LootName() : "";
  item.expiryTime = draw.Below(4) == 0 ? 1700000000000 + draw.Below(1000000) : -1;
  item.tags = draw.Sentence(draw.Below(3));
  item.displayCategories = draw.OneOf(kTypes);
  item.rentalSeconds = draw.Below(2) * 604800;
  item.rentalGames = draw.Below(10);
  return item;
}

LootSvdsLootDescriptionDTO MakeDescription(Draw& draw) {
  LootSvdsLootDescriptionDTO description;
  description.lootName = draw.LootName();
  description.childLootTableNames = {draw.LootName(), draw.LootName()};
  for (const char* locale : {"en_GB", "de_DE", "fr_FR"}) {
    description.localizationMap[locale] = draw.Sentence(4);
    description.localizationLongDescriptionMap[locale] = draw.Sentence(12);
  }
  return description;
}

LootSvdsRecipeClientDTO MakeRecipe(Draw& draw, size_t number) {
  LootSvdsRecipeClientDTO recipe;
  recipe.type = draw.OneOf(kRecipeTypes);
  recipe.recipeName = draw.LootName() + "_" + recipe.type + "_" + std::to_string(number);
  recipe.displayCategories = draw.OneOf(kTypes);
  recipe.crafterName = "standard_crafter";
  for (int32_t slot = 0; slot <= draw.Below(3); ++slot) {
    recipe.slots.push_back({slot, "lootName == " + draw.LootName(), std::to_string(slot + 1)});
  }
  for (int i = 0; i <= draw.Below(3); ++i) {
    recipe.outputs.push_back(
        {draw.LootName(), std::to_string(draw.Below(50)), draw.Below(1000) / 1000.0, i == 0});
  }
  recipe.metadata.guaranteedDescriptions.push_back(MakeDescription(draw));
  if (draw.Below(3) == 0) recipe.metadata.bonusDescriptions.push_back(MakeDescription(draw));
  return recipe;
}

Definitions MakeDefinitions() {
  Draw draw(301);
  Definitions all;
  for (size_t i = 0; i < kDefinitions; ++i) {
    all.lootItemList.lootItems.push_back(MakeDefinition(draw, i));
  }
  all.lootItemList.lastUpdate = 1700000000123;
  for (size_t i = 0; i < kRecipes; ++i) all.recipeList.recipes.push_back(MakeRecipe(draw, i));
  all.recipeList.lastUpdate = 1700000000456;
  for (int i = 0; i < 300; ++i) {
    BindingProperty& names =
        all.queryResult.queryToLootNames.GetOrAddMember("tag == " + draw.Sentence(2));
    for (int n = 0; n < 10; ++n) names.Append().SetString(draw.LootName());
  }
  for (size_t i = 0; i < kItems; ++i) {
    all.playerLoot.push_back({draw.LootName(), std::to_string(i), draw.Below(100), -1});
  }
  return all;
}

PlayerLoot MakeItem(Draw& draw, size_t number) {
  PlayerLoot item;
  item.type = draw.OneOf(kTypes);
  item.lootName = item.type + "_" + std::to_string(number);
  item.lootId = item.lootName;
  item.localizedName = draw.Sentence(3);
  item.localizedDescription = draw.Sentence(12);
  item.itemDesc = draw.Sentence(4);
  item.displayCategories = draw.OneOf(kTypes);
  item.rarity = draw.OneOf(kRarities);
  item.asset = "assets/loot/" + item.lootName + ".png";
  item.tilePath = "/tav-game-data/assets/v1/tiles/" + item.lootName + ".jpg";
  item.splashPath = "/tav-game-data/assets/v1/splashes/" + item.lootName + ".jpg";
  item.upgradeLootName = draw.LootName();
  item.upgradeEssenceName = "CURRENCY_essence";
  item.disenchantLootName = "CURRENCY_essence";
  item.count = draw.Below(20);
  item.storeItemId = draw.Below(500000);
  item.value = draw.Below(3000);
  item.upgradeEssenceValue = draw.Below(3000);
  item.disenchantValue = draw.Below(1000);
  item.expiryTime = -1;
  item.isRental = draw.Below(2) == 0;
  return item;
}

std::unordered_map<std::string, PlayerLoot> MakeItems() {
  Draw draw(302);
  std::unordered_map<std::string, PlayerLoot> items;
  for (size_t i = 0; i < kItems; ++i) {
    PlayerLoot item = MakeItem(draw, i);
    items.emplace(item.lootId, std::move(item));
  }
  return items;
}

const TypeRegistry& MakeRegistry() {
  static TypeRegistry registry;
  static DtoClassNames names;
  Client::Loot::Api::RegisterLootResources(registry);
  RegisterLootDtos(registry, &names);
  return registry;
}

std::string MakeText() {
  ConversionContext context(LootRegistry());
  std::string text;
  WriteJsonValue(context, SampleDefinitions(), &text);
  if (!context.Ok()) std::abort();
  return text;
}

}  // namespace

const TypeRegistry& LootRegistry() {
  static const TypeRegistry& registry = MakeRegistry();
  return registry;
}

const Definitions& SampleDefinitions() {
  static const Definitions definitions = MakeDefinitions();
  return definitions;
}

const std::string& SampleText() {
  static const std::string text = MakeText();
  return text;
}

const std::unordered_map<std::string, PlayerLoot>& SampleItems() {
  static const std::unordered_map<std::string, PlayerLoot> items = MakeItems();
  return items;
}

}  // namespace Kest::Bench
