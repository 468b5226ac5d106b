// What crosses the wire, written down a second time: a misspelt, missing, moved or retyped field, a
// type out of order or a renumbered enumerator shows as a difference of these texts.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>

#include "binding/types/type_registry.h"
#include "loot/wire/dto_class_names.h"
#include "loot/wire/loot_dtos.h"
#include "loot/wire/loot_resources.h"
#include "loot/wire/register_resources.h"

namespace Kest::Client::Loot {
namespace {

// Types between semicolons. A field without a type is a text, [x] is a list, {x} a map.
constexpr std::string_view kResources = R"(
enum LootRarity Default=0 Epic=1 Legendary=2 Mythic=3 Ultimate=4 ; enum LootType Chest=0 Currency=1
Material=2 Skin=3 Skin_Rental=4 ; enum ItemOwnershipStatus NONE=0 FREE=1 RENTAL=2 OWNED=3 ; enum
InventoryOwnership OWNED=0 RENTED=1 F2P=2 ; enum RedeemableStatus UNKNOWN=0 REDEEMABLE=1
REDEEMABLE_RENTAL=2 NOT_REDEEMABLE=3 NOT_REDEEMABLE_RENTAL=4 ALREADY_OWNED=5 ALREADY_RENTED=6
CHAMPION_NOT_OWNED=7 SKIN_NOT_OWNED=8 ; PlayerLoot lootName lootId refId localizedName
localizedDescription itemDesc displayCategories rarity tags type asset tilePath splashPath
shadowPath upgradeLootName upgradeEssenceName disenchantLootName itemStatus:ItemOwnershipStatus
parentItemStatus:ItemOwnershipStatus redeemableStatus:RedeemableStatus count:i32 rentalGames:i32
storeItemId:i32 parentStoreItemId:i32 value:i32 upgradeEssenceValue:i32 disenchantValue:i32
expiryTime:i64 rentalSeconds:i64 isNew:bool isRental:bool ; PlayerLootNotification id count:i32
acknowledged:bool ; PlayerLootMap version:i64 playerLoot:{PlayerLoot} ; RecipeSlot slotNumber:i32
lootIds:[string] tags quantity:i32 ; RecipeMenuConfig enabled:bool
lootItemsUsingBreakoutRecipeMenu:[string] alwaysShowLootIds:[string] ; CurrencyConfiguration
currenciesUsingCapWallets:[string] ; RecipeOutput lootName quantity:i32 ; LootDescription lootName
childLootTableNames:[string] localizationMap:{string} localizationLongDescriptionMap:{string} ;
RecipeMetadata guaranteedDescriptions:[LootDescription] bonusDescriptions:[LootDescription]
tooltipsDisabled:bool ; Recipe recipeName type description contextMenuText requirementText imagePath
displayCategories crafterName slots:[RecipeSlot] outputs:[RecipeOutput] metadata:RecipeMetadata ;
PlayerLootDelta deltaCount:i32 playerLoot:PlayerLoot ; PlayerLootUpdate added:[PlayerLootDelta]
removed:[PlayerLootDelta] redeemed:[PlayerLootDelta] ; ContextMenu name actionType recipeDescription
recipeContextMenuAction enabled:bool essenceType essenceQuantity:i32 requiredTokens requiredOthers
requiredOthersName requiredOthersCount:i32 ; LootGrantNotification id:i64 gameId:u64 playerId:u64
championId:i32 playerGrade lootName messageKey msgId accountId:u64 ; LootItem lootName asset type
rarity value:i32 storeItemId:i32 upgradeLootName expiryTime:i64 tags displayCategories
rentalSeconds:i64 rentalGames:i32 ; CollectionsRental rented:bool ; CollectionsOwnership
freeToPlayReward:bool owned:bool rental:CollectionsRental ; CollectionsChampionSkinMinimal
championId:i32 id:i32 name ownership:CollectionsOwnership splashPath tilePath ;
CollectionsChampionMinimal id:i32 ownership:CollectionsOwnership ; CollectionsWardSkin id:i64 name
ownership:CollectionsOwnership wardImagePath wardShadowImagePath ; CollectionsSummonerIcons
icons:[i32] ; GameDataSummonerIcon id:i32 iconPath ; GameDataSummonerEmote id:i64 name inventoryIcon
description ; CollectionsEmote itemId:i64 ownershipType:InventoryOwnership ; Summoner
summonerLevel:u32 ; LoginSummonerLevelAndPoints summonerLevel:u32 ; LoginAllSummonerData
summonerLevelAndPoints:LoginSummonerLevelAndPoints ; LoginSimpleMessage accountId:u64 msgId type
params:[string] ; LoginDataPacket allSummonerData:LoginAllSummonerData
simpleMessages:[LoginSimpleMessage] ; enum LoginSessionStates IN_PROGRESS=0 ERROR=3 SUCCEEDED=1
LOGGING_OUT=2 ; LoginSession state:LoginSessionStates summonerId:u64 accountId:u64 ; enum
GameflowPhase None=0 Lobby=1 Matchmaking=2 CheckedIntoTournament=3 ReadyCheck=4 ChampSelect=5
GameStart=6 FailedToLaunch=7 InProgress=8 Reconnect=9 WaitingForStats=10 PreEndOfGame=11
EndOfGame=12 TerminatedInError=13 ; GameflowSession phase:GameflowPhase ; LootItemGdsResource id
name description image startDate endDate mappedStoreId:i32 lifetimeMax:i32 autoRedeem:bool
rarity:LootRarity type:LootType ; LootRecipeGdsResource id description contextMenuText
requirementText imagePath ; LootTableGdsResource id description descriptionLong image ;
LootDataGdsResource LootItems:[LootItemGdsResource] LootRecipes:[LootRecipeGdsResource]
LootTables:[LootTableGdsResource]
)";

// Short name, class name behind "com.kestgames." unless it is "loot.dto." and the short name,
// fields.
constexpr std::string_view kDtos = R"(
LootSvdsClientConfigurationDTO loot.dto.ClientConfigurationDTO
lootItemsUsingBreakoutRecipeMenu:[string] lootMaterialsToAlwaysRender:[string]
currenciesUsingCapWallets:[string] ; LootSvdsRecipeOutputDTO loot.dto.RecipeOutputDTO lootName
quantityExpression probability:double allowDuplicates:bool ; LootSvdsRecipeSlotClientDTO
loot.dto.RecipeSlotClientDTO slotNumber:i32 query quantityExpression ; LootSvdsLootDescriptionDTO
loot.dto.LootDescriptionDTO lootName childLootTableNames:[string] localizationMap:{string}
localizationLongDescriptionMap:{string} ; LootSvdsRecipeMetadata loot.dto.RecipeMetadata
guaranteedDescriptions:[LootSvdsLootDescriptionDTO] bonusDescriptions:[LootSvdsLootDescriptionDTO]
tooltipsDisabled:bool ; LootSvdsRecipeClientDTO loot.dto.RecipeClientDTO recipeName type
displayCategories crafterName slots:[LootSvdsRecipeSlotClientDTO] outputs:[LootSvdsRecipeOutputDTO]
metadata:LootSvdsRecipeMetadata ; LootSvdsRecipeListClientDTO loot.dto.RecipeListClientDTO
recipes:[LootSvdsRecipeClientDTO] lastUpdate:i64 ; LootItemClientDTO lootName asset type rarity
value:i32 storeItemId:i32 upgradeLootName expiryTime:i64 tags displayCategories rentalSeconds:i64
rentalGames:i32 ; PlayerLootDTO lootName refId count:i32 expiryTime:i64 ; LootItemListClientDTO
lootItems:[LootItemClientDTO] lastUpdate:i64 ; QueryResultDTO queryToLootNames:object lastUpdate:i64
; PlayerLootDefinitionsDTO lootItemList:LootItemListClientDTO recipeList:LootSvdsRecipeListClientDTO
queryResult:QueryResultDTO playerLoot:[PlayerLootDTO] ; PlayerLootResultDTO status details
added:[PlayerLootDTO] removed:[PlayerLootDTO] redeemed:[string] ; RedeemLootTransactionDTO lootName
; LootNameRefId lootName refId ; CraftLootRefTransactionDTO recipeName
lootNameRefIds:[LootNameRefId] repeat:i32 ; SimpleDialogMessage
platform.messaging.persistence.SimpleDialogMessage accountId:u64 msgId type params:object ;
LootSimpleDialogMessageResponse platform.messaging.persistence.SimpleDialogMessageResponse
accountId:u64 msgId command
)";

// Puts a text above on one line.
std::string Unwrapped(std::string_view text) {
  std::string joined(text.substr(1));
  std::replace(joined.begin(), joined.end(), '\n', ' ');
  return joined;
}

std::string TypeText(const TypeIdentifier& type) {
  static const std::map<TypeId, std::string> kShort = {{TypeId::kInt32, "i32"},
                                                       {TypeId::kUint32, "u32"},
                                                       {TypeId::kInt64, "i64"},
                                                       {TypeId::kUint64, "u64"}};
  if (type.id == TypeId::kVector) return "[" + TypeText(type.Element()) + "]";
  if (type.id == TypeId::kMap) return "{" + TypeText(type.Element()) + "}";
  if (type.record != nullptr) return type.record->name;
  const auto found = kShort.find(type.id);
  return found == kShort.end() ? std::string(TypeIdName(type.id)) : found->second;
}

std::string FieldsText(const TypeRecord& type) {
  std::string text;
  for (const FieldRecord& field : type.fields) {
    text += " " + field.name + field.description + (field.optional ? "" : "!");
    if (field.type.id != TypeId::kString) text += ":" + TypeText(field.type);
  }
  return text;
}

// The entries of a registry; `words` gives what stands between a type's name and its fields.
template <class F>
std::string TypesText(const TypeRegistry& registry, std::string_view nameSpace, F words) {
  std::string text;
  for (const TypeRecord* type : registry.Types()) {
    EXPECT_EQ(type->nameSpace, nameSpace) << type->name;
    text += text.empty() ? "" : "; ";
    text += type->kind == TypeKind::kEnumeration ? "enum " : "";
    text += type->name + words(*type) + FieldsText(*type);
    for (const EnumeratorRecord& word : type->enumerators) {
      text += " " + word.name + "=" + std::to_string(word.value);
    }
    text += " ";
  }
  return text;
}

TEST(WireTypes, AreRegisteredInOrderWithTheirFieldsAndDtosWithBothNames) {
  TypeRegistry resources, dtos;
  Api::RegisterLootResources(resources);
  const auto nothing = [](const TypeRecord&) { return std::string(); };
  EXPECT_EQ(TypesText(resources, "Kest::Client::Loot::Api", nothing), Unwrapped(kResources));
  SVDS::DtoClassNames names;
  SVDS::RegisterLootDtos(dtos, &names);
  const auto className = [&](const TypeRecord& type) {
    const std::string name(names.FindByShortName(type.name));
    EXPECT_EQ(names.FindByTypeKey(type.staticKey), name);
    EXPECT_EQ(name.find("com.kestgames."), 0u) << name;
    return name == "com.kestgames.loot.dto." + type.name ? "" : " " + name.substr(14);
  };
  EXPECT_EQ(TypesText(dtos, "Kest::Client::Loot::SVDS", className), Unwrapped(kDtos));
  EXPECT_EQ(names.FindByShortName("PlayerLoot"), "") << "a resource is no DTO";
  EXPECT_EQ(names.FindByTypeKey(0), "");
}

TEST(WireTypes, MapsCompareByTheItemsTheyHold) {
  const auto item = [](int32_t count) {
    Api::PlayerLoot loot;
    loot.count = count;
    return std::make_shared<const Api::PlayerLoot>(loot);
  };
  const Api::PlayerLootMap map{4, {{"a-1", item(0)}}};
  EXPECT_EQ(map, (Api::PlayerLootMap{4, {{"a-1", item(0)}}})) << "equal items in different places";
  EXPECT_FALSE(map == (Api::PlayerLootMap{5, map.playerLoot}));
  EXPECT_FALSE(map == (Api::PlayerLootMap{4, {{"a-1", item(1)}}}));
  EXPECT_FALSE(map == (Api::PlayerLootMap{4, {{"a-1", nullptr}}}));
  EXPECT_FALSE(map == (Api::PlayerLootMap{4, {{"b", map.playerLoot.at("a-1")}}}));
}

}  // namespace
}  // namespace Kest::Client::Loot
