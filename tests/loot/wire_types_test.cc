// What crosses the wire, written down a second time: a misspelt, missing, moved or retyped field, a
// type out of order or a renumbered enumerator shows as a difference of these texts.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "binding/json_adapter.h"
#include "binding/type_registry.h"
#include "loot/model/dto_class_names.h"
#include "loot/model/loot_dtos.h"
#include "loot/model/loot_resources.h"
#include "loot/model/register_resources.h"
#include "loot/model/sibling_resources.h"

namespace Kest::Client::Loot {
namespace {

// One type per entry; its further lines begin with a blank. A field without a type is a text, [x]
// is a list, {x} a map.
constexpr std::string_view kResources = R"(
enum LootRarity Default=0 Epic=1 Legendary=2 Mythic=3 Ultimate=4
enum LootType Chest=0 Currency=1 Material=2 Skin=3 Skin_Rental=4
enum ItemOwnershipStatus NONE=0 FREE=1 RENTAL=2 OWNED=3
enum InventoryOwnership OWNED=0 RENTED=1 F2P=2
enum RedeemableStatus UNKNOWN=0 REDEEMABLE=1 REDEEMABLE_RENTAL=2 NOT_REDEEMABLE=3
  NOT_REDEEMABLE_RENTAL=4 ALREADY_OWNED=5 ALREADY_RENTED=6 CHAMPION_NOT_OWNED=7 SKIN_NOT_OWNED=8
PlayerLoot lootName lootId refId localizedName localizedDescription itemDesc displayCategories
  rarity tags type asset tilePath splashPath shadowPath upgradeLootName upgradeEssenceName
  disenchantLootName itemStatus:ItemOwnershipStatus parentItemStatus:ItemOwnershipStatus
  redeemableStatus:RedeemableStatus count:i32 rentalGames:i32 storeItemId:i32 parentStoreItemId:i32
  value:i32 upgradeEssenceValue:i32 disenchantValue:i32 expiryTime:i64 rentalSeconds:i64 isNew:bool
  isRental:bool
PlayerLootNotification id count:i32 acknowledged:bool
PlayerLootMap version:i64 playerLoot:{PlayerLoot}
RecipeSlot slotNumber:i32 lootIds:[string] tags quantity:i32
RecipeMenuConfig enabled:bool lootItemsUsingBreakoutRecipeMenu:[string] alwaysShowLootIds:[string]
CurrencyConfiguration currenciesUsingCapWallets:[string]
RecipeOutput lootName quantity:i32
LootDescription lootName childLootTableNames:[string] localizationMap:{string}
  localizationLongDescriptionMap:{string}
RecipeMetadata guaranteedDescriptions:[LootDescription] bonusDescriptions:[LootDescription]
  tooltipsDisabled:bool
Recipe recipeName type description contextMenuText requirementText imagePath displayCategories
  crafterName slots:[RecipeSlot] outputs:[RecipeOutput] metadata:RecipeMetadata
PlayerLootDelta deltaCount:i32 playerLoot:PlayerLoot
PlayerLootUpdate added:[PlayerLootDelta] removed:[PlayerLootDelta] redeemed:[PlayerLootDelta]
ContextMenu name actionType recipeDescription recipeContextMenuAction enabled:bool essenceType
  essenceQuantity:i32 requiredTokens requiredOthers requiredOthersName requiredOthersCount:i32
LootGrantNotification id:i64 gameId:u64 playerId:u64 championId:i32 playerGrade lootName messageKey
  msgId accountId:u64
LootItem lootName asset type rarity value:i32 storeItemId:i32 upgradeLootName expiryTime:i64 tags
  displayCategories rentalSeconds:i64 rentalGames:i32
CollectionsRental rented:bool
CollectionsOwnership freeToPlayReward:bool owned:bool rental:CollectionsRental
CollectionsChampionSkinMinimal championId:i32 id:i32 name ownership:CollectionsOwnership splashPath
  tilePath
CollectionsChampionMinimal id:i32 ownership:CollectionsOwnership
CollectionsWardSkin id:i64 name ownership:CollectionsOwnership wardImagePath wardShadowImagePath
CollectionsSummonerIcons icons:[i32]
GameDataSummonerIcon id:i32 iconPath
GameDataSummonerEmote id:i64 name inventoryIcon description
CollectionsEmote itemId:i64 ownershipType:InventoryOwnership
Summoner summonerLevel:u32
LoginSummonerLevelAndPoints summonerLevel:u32
LoginAllSummonerData summonerLevelAndPoints:LoginSummonerLevelAndPoints
LoginSimpleMessage accountId:u64 msgId type params:[string]
LoginDataPacket allSummonerData:LoginAllSummonerData simpleMessages:[LoginSimpleMessage]
enum LoginSessionStates IN_PROGRESS=0 ERROR=3 SUCCEEDED=1 LOGGING_OUT=2
LoginSession state:LoginSessionStates summonerId:u64 accountId:u64
enum GameflowPhase None=0 Lobby=1 Matchmaking=2 CheckedIntoTournament=3 ReadyCheck=4 ChampSelect=5
  GameStart=6 FailedToLaunch=7 InProgress=8 Reconnect=9 WaitingForStats=10 PreEndOfGame=11
  EndOfGame=12 TerminatedInError=13
GameflowSession phase:GameflowPhase
LootItemGdsResource id name description image startDate endDate mappedStoreId:i32 lifetimeMax:i32
  autoRedeem:bool rarity:LootRarity type:LootType
LootRecipeGdsResource id description contextMenuText requirementText imagePath
LootTableGdsResource id description descriptionLong image
LootDataGdsResource LootItems:[LootItemGdsResource] LootRecipes:[LootRecipeGdsResource]
  LootTables:[LootTableGdsResource]
)";

// Short name, class name behind "com.kestgames.", fields.
constexpr std::string_view kDtos = R"(
LootSvdsClientConfigurationDTO loot.dto.ClientConfigurationDTO
  lootItemsUsingBreakoutRecipeMenu:[string] lootMaterialsToAlwaysRender:[string]
  currenciesUsingCapWallets:[string]
LootSvdsRecipeOutputDTO loot.dto.RecipeOutputDTO lootName quantityExpression probability:double
  allowDuplicates:bool
LootSvdsRecipeSlotClientDTO loot.dto.RecipeSlotClientDTO slotNumber:i32 query quantityExpression
LootSvdsLootDescriptionDTO loot.dto.LootDescriptionDTO lootName childLootTableNames:[string]
  localizationMap:{string} localizationLongDescriptionMap:{string}
LootSvdsRecipeMetadata loot.dto.RecipeMetadata guaranteedDescriptions:[LootSvdsLootDescriptionDTO]
  bonusDescriptions:[LootSvdsLootDescriptionDTO] tooltipsDisabled:bool
LootSvdsRecipeClientDTO loot.dto.RecipeClientDTO recipeName type displayCategories crafterName
  slots:[LootSvdsRecipeSlotClientDTO] outputs:[LootSvdsRecipeOutputDTO]
  metadata:LootSvdsRecipeMetadata
LootSvdsRecipeListClientDTO loot.dto.RecipeListClientDTO recipes:[LootSvdsRecipeClientDTO]
  lastUpdate:i64
LootItemClientDTO loot.dto.LootItemClientDTO lootName asset type rarity value:i32 storeItemId:i32
  upgradeLootName expiryTime:i64 tags displayCategories rentalSeconds:i64 rentalGames:i32
PlayerLootDTO loot.dto.PlayerLootDTO lootName refId count:i32 expiryTime:i64
LootItemListClientDTO loot.dto.LootItemListClientDTO lootItems:[LootItemClientDTO] lastUpdate:i64
QueryResultDTO loot.dto.QueryResultDTO queryToLootNames:object lastUpdate:i64
PlayerLootDefinitionsDTO loot.dto.PlayerLootDefinitionsDTO lootItemList:LootItemListClientDTO
  recipeList:LootSvdsRecipeListClientDTO queryResult:QueryResultDTO playerLoot:[PlayerLootDTO]
PlayerLootResultDTO loot.dto.PlayerLootResultDTO status details added:[PlayerLootDTO]
  removed:[PlayerLootDTO] redeemed:[string]
RedeemLootTransactionDTO loot.dto.RedeemLootTransactionDTO lootName
LootNameRefId loot.dto.LootNameRefId lootName refId
CraftLootRefTransactionDTO loot.dto.CraftLootRefTransactionDTO recipeName
  lootNameRefIds:[LootNameRefId] repeat:i32
SimpleDialogMessage platform.messaging.persistence.SimpleDialogMessage accountId:u64 msgId type
  params:object
LootSimpleDialogMessageResponse platform.messaging.persistence.SimpleDialogMessageResponse
  accountId:u64 msgId command
)";

// Puts every entry of a text above on one line.
std::string Unwrapped(std::string_view text) {
  std::string joined(text.substr(1));
  for (size_t at; (at = joined.find("\n  ")) != std::string::npos;) joined.replace(at, 3, " ");
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

TEST(WireTypes, ResourcesAreRegisteredInOrderWithTheirFields) {
  TypeRegistry registry;
  Api::RegisterLootResources(registry);
  std::string text;
  for (const TypeRecord* type : registry.Types()) {
    EXPECT_EQ(type->nameSpace, "Kest::Client::Loot::Api") << type->name;
    if (type->kind == TypeKind::kEnumeration) text += "enum ";
    text += type->name + FieldsText(*type);
    for (const EnumeratorRecord& word : type->enumerators) {
      text += " " + word.name + "=" + std::to_string(word.value);
    }
    text += "\n";
  }
  EXPECT_EQ(text, Unwrapped(kResources));
}

TEST(WireTypes, DtosAreRegisteredInOrderWithBothNames) {
  TypeRegistry registry;
  SVDS::DtoClassNames names;
  SVDS::RegisterLootDtos(registry, &names);
  constexpr std::string_view kPackage = "com.kestgames.";
  std::string text;
  for (const TypeRecord* type : registry.Types()) {
    EXPECT_EQ(type->nameSpace, "Kest::Client::Loot::SVDS") << type->name;
    const std::string className(names.FindByShortName(type->name));
    EXPECT_EQ(names.FindByTypeKey(type->staticKey), className);
    ASSERT_EQ(className.substr(0, kPackage.size()), kPackage);
    text += type->name + " " + className.substr(kPackage.size()) + FieldsText(*type) + "\n";
  }
  EXPECT_EQ(text, Unwrapped(kDtos));
  EXPECT_EQ(names.FindByShortName("PlayerLoot"), "") << "a resource is no DTO";
  EXPECT_EQ(names.FindByTypeKey(0), "");
}

class WireFormTest : public ::testing::Test {
 protected:
  WireFormTest() {
    SVDS::DtoClassNames names;
    Api::RegisterLootResources(registry_);
    SVDS::RegisterLootDtos(registry_, &names);
  }
  template <class T>
  T Parse(std::string_view json) {
    T value;
    ConversionContext context(registry_);
    ReadJsonValue(context, "value", json, &value);
    EXPECT_EQ(context.ErrorText(), "");
    return value;
  }
  template <class T>
  std::string Written(const T& value) {
    std::string json;
    ConversionContext context(registry_);
    WriteJsonValue(context, value, &json);
    EXPECT_EQ(context.ErrorText(), "");
    return json;
  }
  TypeRegistry registry_;
};

TEST_F(WireFormTest, DefinitionsSurviveTheWayThroughJson) {
  constexpr std::string_view kJson =
      R"({"lootItemList":{"lootItems":[{"lootName":"CHEST_a","asset":"a","type":"CHEST","rarity":)"
      R"("DEFAULT","value":3,"storeItemId":-1,"upgradeLootName":"","expiryTime":-1,"tags":"",)"
      R"("displayCategories":"CHEST","rentalSeconds":4294967296,"rentalGames":0}],"lastUpdate":7},)"
      R"("recipeList":{"recipes":[{"recipeName":"r","type":"OPEN","displayCategories":"CHEST",)"
      R"("crafterName":"","slots":[{"slotNumber":1,"query":"q","quantityExpression":"1+1"}],)"
      R"("outputs":[{"lootName":"x","quantityExpression":"2","probability":0.25,)"
      R"("allowDuplicates":true}],"metadata":{"guaranteedDescriptions":[{"lootName":"x",)"
      R"("childLootTableNames":["t"],"localizationMap":{"de":"y"},)"
      R"("localizationLongDescriptionMap":{}}],"bonusDescriptions":[],"tooltipsDisabled":true}}],)"
      R"("lastUpdate":8},"queryResult":{"queryToLootNames":{"q":["CHEST_a",{"odd":[null]}],"p":)"
      R"("one"},"lastUpdate":9},"playerLoot":[{"lootName":"CHEST_a","refId":"","count":5,)"
      R"("expiryTime":0}]})";
  const auto definitions = Parse<SVDS::PlayerLootDefinitionsDTO>(kJson);
  EXPECT_EQ(definitions.lootItemList.lootItems.at(0).rentalSeconds, 4294967296);
  EXPECT_EQ(definitions.recipeList.recipes.at(0).outputs.at(0).probability, 0.25);
  EXPECT_EQ(Written(definitions), kJson);
  EXPECT_EQ(Parse<SVDS::PlayerLootDefinitionsDTO>(kJson), definitions);
}

TEST_F(WireFormTest, EnumerationsTravelByName) {
  Api::PlayerLoot item;
  EXPECT_NE(Written(item).find(R"("itemStatus":"NONE","parentItemStatus":"NONE",)"
                               R"("redeemableStatus":"UNKNOWN","count":0,)"),
            std::string::npos);
  EXPECT_EQ(Written(Api::LoginSession{.state = Api::LoginSessionStates(3)}),
            R"({"state":"ERROR","summonerId":0,"accountId":0})");
  EXPECT_EQ(static_cast<int>(Parse<Api::LoginSession>(R"({"state":"ERROR"})").state), 3);
  const auto described =
      Parse<Api::LootItemGdsResource>(R"({"rarity":"Mythic","type":"Skin_Rental","more":1})");
  EXPECT_EQ(static_cast<int>(described.rarity), 3);
  EXPECT_EQ(described.type, Api::LootType::kSkinRental);
  EXPECT_EQ(Parse<Api::CollectionsEmote>(R"({"itemId":4294967296,"ownershipType":"OWNED"})"),
            (Api::CollectionsEmote{4294967296, Api::InventoryOwnership::kOwned}));
}

TEST_F(WireFormTest, MapsCompareAndTravelByTheItemsTheyHold) {
  Api::PlayerLootMap left;
  left.version = 4;
  Api::PlayerLoot item;
  left.playerLoot["a-1"] = std::make_shared<Api::PlayerLoot>(item);
  Api::PlayerLootMap right = Parse<Api::PlayerLootMap>(Written(left));
  EXPECT_EQ(left, right) << "equal items in different places";
  item.count = 1;
  right.playerLoot["a-1"] = std::make_shared<Api::PlayerLoot>(item);
  EXPECT_FALSE(left == right);
  right.playerLoot["a-1"] = nullptr;
  EXPECT_FALSE(left == right);
  right.playerLoot.erase("a-1");
  right.playerLoot["b"] = left.playerLoot["a-1"];
  EXPECT_FALSE(left == right) << "another id";
}

}  // namespace
}  // namespace Kest::Client::Loot
