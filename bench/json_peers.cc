// The peer at its best.
#if defined(__SSE2__)
#define RAPIDJSON_SSE2
#endif

#include "bench/json_peers.h"

#include <rapidjson/writer.h>

#include <nlohmann/json.hpp>
#include <string_view>
#include <vector>

namespace Kest::Client::Loot::SVDS {

// The free-form member is left out by both peers: they have no such tree to put it in.
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(LootSvdsRecipeOutputDTO, lootName, quantityExpression,
                                   probability, allowDuplicates)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(LootSvdsRecipeSlotClientDTO, slotNumber, query,
                                   quantityExpression)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(LootSvdsLootDescriptionDTO, lootName, childLootTableNames,
                                   localizationMap, localizationLongDescriptionMap)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(LootSvdsRecipeMetadata, guaranteedDescriptions,
                                   bonusDescriptions, tooltipsDisabled)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(LootSvdsRecipeClientDTO, recipeName, type, displayCategories,
                                   crafterName, slots, outputs, metadata)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(LootSvdsRecipeListClientDTO, recipes, lastUpdate)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(LootItemClientDTO, lootName, asset, type, rarity, value,
                                   storeItemId, upgradeLootName, expiryTime, tags,
                                   displayCategories, rentalSeconds, rentalGames)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(LootItemListClientDTO, lootItems, lastUpdate)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(PlayerLootDTO, lootName, refId, count, expiryTime)

}  // namespace Kest::Client::Loot::SVDS

namespace Kest::Bench {
namespace {

using namespace Client::Loot::SVDS;
using rapidjson::Value;

bool Convert(const Value& value, std::string* target) {
  if (!value.IsString()) return false;
  target->assign(value.GetString(), value.GetStringLength());
  return true;
}
bool Convert(const Value& value, bool* target) {
  if (!value.IsBool()) return false;
  *target = value.GetBool();
  return true;
}
bool Convert(const Value& value, int32_t* target) {
  if (!value.IsInt()) return false;
  *target = value.GetInt();
  return true;
}
bool Convert(const Value& value, int64_t* target) {
  if (!value.IsInt64()) return false;
  *target = value.GetInt64();
  return true;
}
bool Convert(const Value& value, double* target) {
  if (!value.IsNumber()) return false;
  *target = value.GetDouble();
  return true;
}

bool Convert(const Value& value, LootItemClientDTO* target);
bool Convert(const Value& value, PlayerLootDTO* target);
bool Convert(const Value& value, LootSvdsRecipeClientDTO* target);
bool Convert(const Value& value, LootSvdsRecipeSlotClientDTO* target);
bool Convert(const Value& value, LootSvdsRecipeOutputDTO* target);
bool Convert(const Value& value, LootSvdsLootDescriptionDTO* target);
bool Convert(const Value& value, LootSvdsRecipeMetadata* target);

template <typename T>
bool Convert(const Value& value, std::vector<T>* target) {
  if (!value.IsArray()) return false;
  target->resize(value.Size());
  for (rapidjson::SizeType i = 0; i < value.Size(); ++i) {
    if (!Convert(value[i], &(*target)[i])) return false;
  }
  return true;
}

bool Convert(const Value& value, std::map<std::string, std::string>* target) {
  if (!value.IsObject()) return false;
  for (const auto& member : value.GetObject()) {
    std::string& text = (*target)[{member.name.GetString(), member.name.GetStringLength()}];
    if (!Convert(member.value, &text)) return false;
  }
  return true;
}

template <typename T>
bool Member(const Value& value, const char* name, T* target) {
  const auto member = value.FindMember(name);
  return member == value.MemberEnd() || Convert(member->value, target);
}

bool Convert(const Value& value, LootItemClientDTO* target) {
  return value.IsObject() && Member(value, "lootName", &target->lootName) &&
         Member(value, "asset", &target->asset) && Member(value, "type", &target->type) &&
         Member(value, "rarity", &target->rarity) && Member(value, "value", &target->value) &&
         Member(value, "storeItemId", &target->storeItemId) &&
         Member(value, "upgradeLootName", &target->upgradeLootName) &&
         Member(value, "expiryTime", &target->expiryTime) && Member(value, "tags", &target->tags) &&
         Member(value, "displayCategories", &target->displayCategories) &&
         Member(value, "rentalSeconds", &target->rentalSeconds) &&
         Member(value, "rentalGames", &target->rentalGames);
}

bool Convert(const Value& value, PlayerLootDTO* target) {
  return value.IsObject() && Member(value, "lootName", &target->lootName) &&
         Member(value, "refId", &target->refId) && Member(value, "count", &target->count) &&
         Member(value, "expiryTime", &target->expiryTime);
}

bool Convert(const Value& value, LootSvdsRecipeSlotClientDTO* target) {
  return value.IsObject() && Member(value, "slotNumber", &target->slotNumber) &&
         Member(value, "query", &target->query) &&
         Member(value, "quantityExpression", &target->quantityExpression);
}

bool Convert(const Value& value, LootSvdsRecipeOutputDTO* target) {
  return value.IsObject() && Member(value, "lootName", &target->lootName) &&
         Member(value, "quantityExpression", &target->quantityExpression) &&
         Member(value, "probability", &target->probability) &&
         Member(value, "allowDuplicates", &target->allowDuplicates);
}

bool Convert(const Value& value, LootSvdsLootDescriptionDTO* target) {
  return value.IsObject() && Member(value, "lootName", &target->lootName) &&
         Member(value, "childLootTableNames", &target->childLootTableNames) &&
         Member(value, "localizationMap", &target->localizationMap) &&
         Member(value, "localizationLongDescriptionMap", &target->localizationLongDescriptionMap);
}

bool Convert(const Value& value, LootSvdsRecipeMetadata* target) {
  return value.IsObject() &&
         Member(value, "guaranteedDescriptions", &target->guaranteedDescriptions) &&
         Member(value, "bonusDescriptions", &target->bonusDescriptions) &&
         Member(value, "tooltipsDisabled", &target->tooltipsDisabled);
}

bool Convert(const Value& value, LootSvdsRecipeClientDTO* target) {
  return value.IsObject() && Member(value, "recipeName", &target->recipeName) &&
         Member(value, "type", &target->type) &&
         Member(value, "displayCategories", &target->displayCategories) &&
         Member(value, "crafterName", &target->crafterName) &&
         Member(value, "slots", &target->slots) && Member(value, "outputs", &target->outputs) &&
         Member(value, "metadata", &target->metadata);
}

using ItemWriter = rapidjson::Writer<rapidjson::StringBuffer>;

void Write(ItemWriter& writer, const char* name, const std::string& text) {
  writer.Key(name);
  writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}
void Write(ItemWriter& writer, const char* name, int32_t number) {
  writer.Key(name);
  writer.Int(number);
}
void Write(ItemWriter& writer, const char* name, int64_t number) {
  writer.Key(name);
  writer.Int64(number);
}
void Write(ItemWriter& writer, const char* name, bool value) {
  writer.Key(name);
  writer.Bool(value);
}

const char* Name(Client::Loot::Api::ItemOwnershipStatus status) {
  static constexpr const char* kNames[] = {"NONE", "FREE", "RENTAL", "OWNED"};
  return kNames[static_cast<int32_t>(status)];
}

void Write(ItemWriter& writer, const PlayerLoot& item) {
  writer.StartObject();
  Write(writer, "lootName", item.lootName);
  Write(writer, "lootId", item.lootId);
  Write(writer, "refId", item.refId);
  Write(writer, "localizedName", item.localizedName);
  Write(writer, "localizedDescription", item.localizedDescription);
  Write(writer, "itemDesc", item.itemDesc);
  Write(writer, "displayCategories", item.displayCategories);
  Write(writer, "rarity", item.rarity);
  Write(writer, "tags", item.tags);
  Write(writer, "type", item.type);
  Write(writer, "asset", item.asset);
  Write(writer, "tilePath", item.tilePath);
  Write(writer, "splashPath", item.splashPath);
  Write(writer, "shadowPath", item.shadowPath);
  Write(writer, "upgradeLootName", item.upgradeLootName);
  Write(writer, "upgradeEssenceName", item.upgradeEssenceName);
  Write(writer, "disenchantLootName", item.disenchantLootName);
  writer.Key("itemStatus");
  writer.String(Name(item.itemStatus));
  writer.Key("parentItemStatus");
  writer.String(Name(item.parentItemStatus));
  writer.Key("redeemableStatus");
  writer.String("UNKNOWN");
  Write(writer, "count", item.count);
  Write(writer, "rentalGames", item.rentalGames);
  Write(writer, "storeItemId", item.storeItemId);
  Write(writer, "parentStoreItemId", item.parentStoreItemId);
  Write(writer, "value", item.value);
  Write(writer, "upgradeEssenceValue", item.upgradeEssenceValue);
  Write(writer, "disenchantValue", item.disenchantValue);
  Write(writer, "expiryTime", item.expiryTime);
  Write(writer, "rentalSeconds", item.rentalSeconds);
  Write(writer, "isNew", item.isNew);
  Write(writer, "isRental", item.isRental);
  writer.EndObject();
}

}  // namespace

bool ConvertRapidJson(const Value& value, Definitions* definitions) {
  const auto items = value.FindMember("lootItemList");
  const auto recipes = value.FindMember("recipeList");
  return items != value.MemberEnd() && recipes != value.MemberEnd() &&
         Member(items->value, "lootItems", &definitions->lootItemList.lootItems) &&
         Member(items->value, "lastUpdate", &definitions->lootItemList.lastUpdate) &&
         Member(recipes->value, "recipes", &definitions->recipeList.recipes) &&
         Member(recipes->value, "lastUpdate", &definitions->recipeList.lastUpdate) &&
         Member(value, "playerLoot", &definitions->playerLoot);
}

void ConvertNlohmann(const nlohmann::json& value, Definitions* definitions) {
  value.at("lootItemList").get_to(definitions->lootItemList);
  value.at("recipeList").get_to(definitions->recipeList);
  value.at("playerLoot").get_to(definitions->playerLoot);
}

void WriteRapidJson(const std::unordered_map<std::string, PlayerLoot>& items,
                    rapidjson::StringBuffer* buffer) {
  ItemWriter writer(*buffer);
  writer.StartObject();
  for (const auto& [id, item] : items) {
    writer.Key(id.data(), static_cast<rapidjson::SizeType>(id.size()));
    Write(writer, item);
  }
  writer.EndObject();
}

}  // namespace Kest::Bench
