#include "loot/wire/dto_class_names.h"

#include "binding/convert/define_struct.h"
#include "binding/types/static_type.h"
#include "loot/wire/loot_dtos.h"

namespace Kest::Client::Loot::SVDS {
namespace {

constexpr std::string_view kNamespace = "Kest::Client::Loot::SVDS";

// Enters both names of a DTO before it registers the structure; the short one is that of its type.
class DtoRegistrar {
 public:
  DtoRegistrar(TypeRegistry& registry, DtoClassNames& names) : registry_(registry), names_(names) {}

  template <class Dto>
  auto Define(std::string_view className) {
    constexpr std::string_view kName = StaticType::Name<Dto>();
    static_assert(kName.starts_with(kNamespace));
    constexpr std::string_view kShortName = kName.substr(kNamespace.size() + 2);
    names_.Enter(kShortName, StaticType::Key<Dto>(), className);
    return DefineStruct<Dto>(registry_, kShortName, kNamespace);
  }

 private:
  TypeRegistry& registry_;
  DtoClassNames& names_;
};

void RegisterRecipeDtos(DtoRegistrar& registrar) {
  registrar.Define<LootSvdsClientConfigurationDTO>("com.kestgames.loot.dto.ClientConfigurationDTO")
      .Fields<&LootSvdsClientConfigurationDTO::lootItemsUsingBreakoutRecipeMenu,
              &LootSvdsClientConfigurationDTO::lootMaterialsToAlwaysRender,
              &LootSvdsClientConfigurationDTO::currenciesUsingCapWallets>();
  registrar.Define<LootSvdsRecipeOutputDTO>("com.kestgames.loot.dto.RecipeOutputDTO")
      .Fields<&LootSvdsRecipeOutputDTO::lootName, &LootSvdsRecipeOutputDTO::quantityExpression,
              &LootSvdsRecipeOutputDTO::probability, &LootSvdsRecipeOutputDTO::allowDuplicates>();
  registrar.Define<LootSvdsRecipeSlotClientDTO>("com.kestgames.loot.dto.RecipeSlotClientDTO")
      .Fields<&LootSvdsRecipeSlotClientDTO::slotNumber, &LootSvdsRecipeSlotClientDTO::query,
              &LootSvdsRecipeSlotClientDTO::quantityExpression>();
  registrar.Define<LootSvdsLootDescriptionDTO>("com.kestgames.loot.dto.LootDescriptionDTO")
      .Fields<&LootSvdsLootDescriptionDTO::lootName,
              &LootSvdsLootDescriptionDTO::childLootTableNames,
              &LootSvdsLootDescriptionDTO::localizationMap,
              &LootSvdsLootDescriptionDTO::localizationLongDescriptionMap>();
  registrar.Define<LootSvdsRecipeMetadata>("com.kestgames.loot.dto.RecipeMetadata")
      .Fields<&LootSvdsRecipeMetadata::guaranteedDescriptions,
              &LootSvdsRecipeMetadata::bonusDescriptions,
              &LootSvdsRecipeMetadata::tooltipsDisabled>();
  registrar.Define<LootSvdsRecipeClientDTO>("com.kestgames.loot.dto.RecipeClientDTO")
      .Fields<&LootSvdsRecipeClientDTO::recipeName, &LootSvdsRecipeClientDTO::type,
              &LootSvdsRecipeClientDTO::displayCategories, &LootSvdsRecipeClientDTO::crafterName,
              &LootSvdsRecipeClientDTO::slots, &LootSvdsRecipeClientDTO::outputs,
              &LootSvdsRecipeClientDTO::metadata>();
  registrar.Define<LootSvdsRecipeListClientDTO>("com.kestgames.loot.dto.RecipeListClientDTO")
      .Fields<&LootSvdsRecipeListClientDTO::recipes, &LootSvdsRecipeListClientDTO::lastUpdate>();
}

void RegisterInventoryDtos(DtoRegistrar& registrar) {
  registrar.Define<LootItemClientDTO>("com.kestgames.loot.dto.LootItemClientDTO")
      .Fields<&LootItemClientDTO::lootName, &LootItemClientDTO::asset, &LootItemClientDTO::type,
              &LootItemClientDTO::rarity, &LootItemClientDTO::value,
              &LootItemClientDTO::storeItemId, &LootItemClientDTO::upgradeLootName,
              &LootItemClientDTO::expiryTime, &LootItemClientDTO::tags,
              &LootItemClientDTO::displayCategories, &LootItemClientDTO::rentalSeconds,
              &LootItemClientDTO::rentalGames>();
  registrar.Define<PlayerLootDTO>("com.kestgames.loot.dto.PlayerLootDTO")
      .Fields<&PlayerLootDTO::lootName, &PlayerLootDTO::refId, &PlayerLootDTO::count,
              &PlayerLootDTO::expiryTime>();
  registrar.Define<LootItemListClientDTO>("com.kestgames.loot.dto.LootItemListClientDTO")
      .Fields<&LootItemListClientDTO::lootItems, &LootItemListClientDTO::lastUpdate>();
  registrar.Define<QueryResultDTO>("com.kestgames.loot.dto.QueryResultDTO")
      .Fields<&QueryResultDTO::queryToLootNames, &QueryResultDTO::lastUpdate>();
  registrar.Define<PlayerLootDefinitionsDTO>("com.kestgames.loot.dto.PlayerLootDefinitionsDTO")
      .Fields<&PlayerLootDefinitionsDTO::lootItemList, &PlayerLootDefinitionsDTO::recipeList,
              &PlayerLootDefinitionsDTO::queryResult, &PlayerLootDefinitionsDTO::playerLoot>();
}

void RegisterTransactionDtos(DtoRegistrar& registrar) {
  registrar.Define<PlayerLootResultDTO>("com.kestgames.loot.dto.PlayerLootResultDTO")
      .Fields<&PlayerLootResultDTO::status, &PlayerLootResultDTO::details,
              &PlayerLootResultDTO::added, &PlayerLootResultDTO::removed,
              &PlayerLootResultDTO::redeemed>();
  registrar.Define<RedeemLootTransactionDTO>("com.kestgames.loot.dto.RedeemLootTransactionDTO")
      .Field<&RedeemLootTransactionDTO::lootName>();
  registrar.Define<LootNameRefId>("com.kestgames.loot.dto.LootNameRefId")
      .Fields<&LootNameRefId::lootName, &LootNameRefId::refId>();
  registrar.Define<CraftLootRefTransactionDTO>("com.kestgames.loot.dto.CraftLootRefTransactionDTO")
      .Fields<&CraftLootRefTransactionDTO::recipeName, &CraftLootRefTransactionDTO::lootNameRefIds,
              &CraftLootRefTransactionDTO::repeat>();
}

void RegisterMessageDtos(DtoRegistrar& registrar) {
  registrar
      .Define<SimpleDialogMessage>(
          "com.kestgames.platform.messaging.persistence.SimpleDialogMessage")
      .Fields<&SimpleDialogMessage::accountId, &SimpleDialogMessage::msgId,
              &SimpleDialogMessage::type, &SimpleDialogMessage::params>();
  registrar
      .Define<LootSimpleDialogMessageResponse>(
          "com.kestgames.platform.messaging.persistence.SimpleDialogMessageResponse")
      .Fields<&LootSimpleDialogMessageResponse::accountId, &LootSimpleDialogMessageResponse::msgId,
              &LootSimpleDialogMessageResponse::command>();
}

}  // namespace

void DtoClassNames::Enter(std::string_view shortName, const TypeKey& typeKey,
                          std::string_view className) {
  entries_.push_back({shortName, &typeKey, className});
}

std::string_view DtoClassNames::FindByShortName(std::string_view shortName) const {
  return Find([shortName](const Entry& entry) { return entry.shortName == shortName; });
}

std::string_view DtoClassNames::FindByTypeKey(const TypeKey& typeKey) const {
  return Find([&typeKey](const Entry& entry) { return entry.typeKey == &typeKey; });
}

void RegisterLootDtos(TypeRegistry& registry, DtoClassNames* names) {
  DtoRegistrar registrar(registry, *names);
  RegisterRecipeDtos(registrar);
  RegisterInventoryDtos(registrar);
  RegisterTransactionDtos(registrar);
  RegisterMessageDtos(registrar);
}

}  // namespace Kest::Client::Loot::SVDS
