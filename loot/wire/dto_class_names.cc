#include "loot/wire/dto_class_names.h"

#include "binding/convert/define_struct.h"
#include "binding/types/static_type.h"
#include "loot/wire/loot_dtos.h"

namespace Kest::Client::Loot::SVDS {
namespace {

// Enters both names of a DTO before it registers the structure.
class DtoRegistrar {
 public:
  DtoRegistrar(TypeRegistry& registry, DtoClassNames& names) : registry_(registry), names_(names) {}

  template <class Dto>
  auto Define(const char* shortName, std::string_view className) {
    names_.Enter(shortName, StaticType::Key<Dto>(), className);
    return DefineStruct<Dto>(registry_, shortName, "Kest::Client::Loot::SVDS");
  }

 private:
  TypeRegistry& registry_;
  DtoClassNames& names_;
};

void RegisterRecipeDtos(DtoRegistrar& registrar) {
  registrar
      .Define<LootSvdsClientConfigurationDTO>("LootSvdsClientConfigurationDTO",
                                              "com.kestgames.loot.dto.ClientConfigurationDTO")
      .Field<&LootSvdsClientConfigurationDTO::lootItemsUsingBreakoutRecipeMenu>(
          "lootItemsUsingBreakoutRecipeMenu")
      .Field<&LootSvdsClientConfigurationDTO::lootMaterialsToAlwaysRender>(
          "lootMaterialsToAlwaysRender")
      .Field<&LootSvdsClientConfigurationDTO::currenciesUsingCapWallets>(
          "currenciesUsingCapWallets");
  registrar
      .Define<LootSvdsRecipeOutputDTO>("LootSvdsRecipeOutputDTO",
                                       "com.kestgames.loot.dto.RecipeOutputDTO")
      .Field<&LootSvdsRecipeOutputDTO::lootName>("lootName")
      .Field<&LootSvdsRecipeOutputDTO::quantityExpression>("quantityExpression")
      .Field<&LootSvdsRecipeOutputDTO::probability>("probability")
      .Field<&LootSvdsRecipeOutputDTO::allowDuplicates>("allowDuplicates");
  registrar
      .Define<LootSvdsRecipeSlotClientDTO>("LootSvdsRecipeSlotClientDTO",
                                           "com.kestgames.loot.dto.RecipeSlotClientDTO")
      .Field<&LootSvdsRecipeSlotClientDTO::slotNumber>("slotNumber")
      .Field<&LootSvdsRecipeSlotClientDTO::query>("query")
      .Field<&LootSvdsRecipeSlotClientDTO::quantityExpression>("quantityExpression");
  registrar
      .Define<LootSvdsLootDescriptionDTO>("LootSvdsLootDescriptionDTO",
                                          "com.kestgames.loot.dto.LootDescriptionDTO")
      .Field<&LootSvdsLootDescriptionDTO::lootName>("lootName")
      .Field<&LootSvdsLootDescriptionDTO::childLootTableNames>("childLootTableNames")
      .Field<&LootSvdsLootDescriptionDTO::localizationMap>("localizationMap")
      .Field<&LootSvdsLootDescriptionDTO::localizationLongDescriptionMap>(
          "localizationLongDescriptionMap");
  registrar
      .Define<LootSvdsRecipeMetadata>("LootSvdsRecipeMetadata",
                                      "com.kestgames.loot.dto.RecipeMetadata")
      .Field<&LootSvdsRecipeMetadata::guaranteedDescriptions>("guaranteedDescriptions")
      .Field<&LootSvdsRecipeMetadata::bonusDescriptions>("bonusDescriptions")
      .Field<&LootSvdsRecipeMetadata::tooltipsDisabled>("tooltipsDisabled");
  registrar
      .Define<LootSvdsRecipeClientDTO>("LootSvdsRecipeClientDTO",
                                       "com.kestgames.loot.dto.RecipeClientDTO")
      .Field<&LootSvdsRecipeClientDTO::recipeName>("recipeName")
      .Field<&LootSvdsRecipeClientDTO::type>("type")
      .Field<&LootSvdsRecipeClientDTO::displayCategories>("displayCategories")
      .Field<&LootSvdsRecipeClientDTO::crafterName>("crafterName")
      .Field<&LootSvdsRecipeClientDTO::slots>("slots")
      .Field<&LootSvdsRecipeClientDTO::outputs>("outputs")
      .Field<&LootSvdsRecipeClientDTO::metadata>("metadata");
  registrar
      .Define<LootSvdsRecipeListClientDTO>("LootSvdsRecipeListClientDTO",
                                           "com.kestgames.loot.dto.RecipeListClientDTO")
      .Field<&LootSvdsRecipeListClientDTO::recipes>("recipes")
      .Field<&LootSvdsRecipeListClientDTO::lastUpdate>("lastUpdate");
}

void RegisterInventoryDtos(DtoRegistrar& registrar) {
  registrar
      .Define<LootItemClientDTO>("LootItemClientDTO", "com.kestgames.loot.dto.LootItemClientDTO")
      .Field<&LootItemClientDTO::lootName>("lootName")
      .Field<&LootItemClientDTO::asset>("asset")
      .Field<&LootItemClientDTO::type>("type")
      .Field<&LootItemClientDTO::rarity>("rarity")
      .Field<&LootItemClientDTO::value>("value")
      .Field<&LootItemClientDTO::storeItemId>("storeItemId")
      .Field<&LootItemClientDTO::upgradeLootName>("upgradeLootName")
      .Field<&LootItemClientDTO::expiryTime>("expiryTime")
      .Field<&LootItemClientDTO::tags>("tags")
      .Field<&LootItemClientDTO::displayCategories>("displayCategories")
      .Field<&LootItemClientDTO::rentalSeconds>("rentalSeconds")
      .Field<&LootItemClientDTO::rentalGames>("rentalGames");
  registrar.Define<PlayerLootDTO>("PlayerLootDTO", "com.kestgames.loot.dto.PlayerLootDTO")
      .Field<&PlayerLootDTO::lootName>("lootName")
      .Field<&PlayerLootDTO::refId>("refId")
      .Field<&PlayerLootDTO::count>("count")
      .Field<&PlayerLootDTO::expiryTime>("expiryTime");
  registrar
      .Define<LootItemListClientDTO>("LootItemListClientDTO",
                                     "com.kestgames.loot.dto.LootItemListClientDTO")
      .Field<&LootItemListClientDTO::lootItems>("lootItems")
      .Field<&LootItemListClientDTO::lastUpdate>("lastUpdate");
  registrar.Define<QueryResultDTO>("QueryResultDTO", "com.kestgames.loot.dto.QueryResultDTO")
      .Field<&QueryResultDTO::queryToLootNames>("queryToLootNames")
      .Field<&QueryResultDTO::lastUpdate>("lastUpdate");
  registrar
      .Define<PlayerLootDefinitionsDTO>("PlayerLootDefinitionsDTO",
                                        "com.kestgames.loot.dto.PlayerLootDefinitionsDTO")
      .Field<&PlayerLootDefinitionsDTO::lootItemList>("lootItemList")
      .Field<&PlayerLootDefinitionsDTO::recipeList>("recipeList")
      .Field<&PlayerLootDefinitionsDTO::queryResult>("queryResult")
      .Field<&PlayerLootDefinitionsDTO::playerLoot>("playerLoot");
}

void RegisterTransactionDtos(DtoRegistrar& registrar) {
  registrar
      .Define<PlayerLootResultDTO>("PlayerLootResultDTO",
                                   "com.kestgames.loot.dto.PlayerLootResultDTO")
      .Field<&PlayerLootResultDTO::status>("status")
      .Field<&PlayerLootResultDTO::details>("details")
      .Field<&PlayerLootResultDTO::added>("added")
      .Field<&PlayerLootResultDTO::removed>("removed")
      .Field<&PlayerLootResultDTO::redeemed>("redeemed");
  registrar
      .Define<RedeemLootTransactionDTO>("RedeemLootTransactionDTO",
                                        "com.kestgames.loot.dto.RedeemLootTransactionDTO")
      .Field<&RedeemLootTransactionDTO::lootName>("lootName");
  registrar.Define<LootNameRefId>("LootNameRefId", "com.kestgames.loot.dto.LootNameRefId")
      .Field<&LootNameRefId::lootName>("lootName")
      .Field<&LootNameRefId::refId>("refId");
  registrar
      .Define<CraftLootRefTransactionDTO>("CraftLootRefTransactionDTO",
                                          "com.kestgames.loot.dto.CraftLootRefTransactionDTO")
      .Field<&CraftLootRefTransactionDTO::recipeName>("recipeName")
      .Field<&CraftLootRefTransactionDTO::lootNameRefIds>("lootNameRefIds")
      .Field<&CraftLootRefTransactionDTO::repeat>("repeat");
}

void RegisterMessageDtos(DtoRegistrar& registrar) {
  registrar
      .Define<SimpleDialogMessage>(
          "SimpleDialogMessage", "com.kestgames.platform.messaging.persistence.SimpleDialogMessage")
      .Field<&SimpleDialogMessage::accountId>("accountId")
      .Field<&SimpleDialogMessage::msgId>("msgId")
      .Field<&SimpleDialogMessage::type>("type")
      .Field<&SimpleDialogMessage::params>("params");
  registrar
      .Define<LootSimpleDialogMessageResponse>(
          "LootSimpleDialogMessageResponse",
          "com.kestgames.platform.messaging.persistence.SimpleDialogMessageResponse")
      .Field<&LootSimpleDialogMessageResponse::accountId>("accountId")
      .Field<&LootSimpleDialogMessageResponse::msgId>("msgId")
      .Field<&LootSimpleDialogMessageResponse::command>("command");
}

}  // namespace

void DtoClassNames::Enter(std::string_view shortName, uint32_t typeKey,
                          std::string_view className) {
  byShortName_.emplace(shortName, className);
  byTypeKey_.emplace(typeKey, className);
}

std::string_view DtoClassNames::FindByShortName(std::string_view shortName) const {
  const auto found = byShortName_.find(shortName);
  return found == byShortName_.end() ? std::string_view() : found->second;
}

std::string_view DtoClassNames::FindByTypeKey(uint32_t typeKey) const {
  const auto found = byTypeKey_.find(typeKey);
  return found == byTypeKey_.end() ? std::string_view() : found->second;
}

void RegisterLootDtos(TypeRegistry& registry, DtoClassNames* names) {
  DtoRegistrar registrar(registry, *names);
  RegisterRecipeDtos(registrar);
  RegisterInventoryDtos(registrar);
  RegisterTransactionDtos(registrar);
  RegisterMessageDtos(registrar);
}

}  // namespace Kest::Client::Loot::SVDS
