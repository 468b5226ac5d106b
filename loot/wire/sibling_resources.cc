#include "loot/wire/sibling_resources.h"

#include "binding/convert/define_struct.h"

namespace Kest::Client::Loot::Api {
namespace {

void RegisterCollections(TypeRegistry& registry) {
  DefineStruct<CollectionsRental>(registry, "CollectionsRental", kApiNamespace)
      .Field<&CollectionsRental::rented>("rented");
  DefineStruct<CollectionsOwnership>(registry, "CollectionsOwnership", kApiNamespace)
      .Field<&CollectionsOwnership::freeToPlayReward>("freeToPlayReward")
      .Field<&CollectionsOwnership::owned>("owned")
      .Field<&CollectionsOwnership::rental>("rental");
  DefineStruct<CollectionsChampionSkinMinimal>(registry, "CollectionsChampionSkinMinimal",
                                               kApiNamespace)
      .Field<&CollectionsChampionSkinMinimal::championId>("championId")
      .Field<&CollectionsChampionSkinMinimal::id>("id")
      .Field<&CollectionsChampionSkinMinimal::name>("name")
      .Field<&CollectionsChampionSkinMinimal::ownership>("ownership")
      .Field<&CollectionsChampionSkinMinimal::splashPath>("splashPath")
      .Field<&CollectionsChampionSkinMinimal::tilePath>("tilePath");
  DefineStruct<CollectionsChampionMinimal>(registry, "CollectionsChampionMinimal", kApiNamespace)
      .Field<&CollectionsChampionMinimal::id>("id")
      .Field<&CollectionsChampionMinimal::ownership>("ownership");
  DefineStruct<CollectionsWardSkin>(registry, "CollectionsWardSkin", kApiNamespace)
      .Field<&CollectionsWardSkin::id>("id")
      .Field<&CollectionsWardSkin::name>("name")
      .Field<&CollectionsWardSkin::ownership>("ownership")
      .Field<&CollectionsWardSkin::wardImagePath>("wardImagePath")
      .Field<&CollectionsWardSkin::wardShadowImagePath>("wardShadowImagePath");
  DefineStruct<CollectionsSummonerIcons>(registry, "CollectionsSummonerIcons", kApiNamespace)
      .Field<&CollectionsSummonerIcons::icons>("icons");
  DefineStruct<GameDataSummonerIcon>(registry, "GameDataSummonerIcon", kApiNamespace)
      .Field<&GameDataSummonerIcon::id>("id")
      .Field<&GameDataSummonerIcon::iconPath>("iconPath");
  DefineStruct<GameDataSummonerEmote>(registry, "GameDataSummonerEmote", kApiNamespace)
      .Field<&GameDataSummonerEmote::id>("id")
      .Field<&GameDataSummonerEmote::name>("name")
      .Field<&GameDataSummonerEmote::inventoryIcon>("inventoryIcon")
      .Field<&GameDataSummonerEmote::description>("description");
  DefineStruct<CollectionsEmote>(registry, "CollectionsEmote", kApiNamespace)
      .Field<&CollectionsEmote::itemId>("itemId")
      .Field<&CollectionsEmote::ownershipType>("ownershipType");
}

void RegisterSession(TypeRegistry& registry) {
  DefineStruct<Summoner>(registry, "Summoner", kApiNamespace)
      .Field<&Summoner::summonerLevel>("summonerLevel");
  DefineStruct<LoginSummonerLevelAndPoints>(registry, "LoginSummonerLevelAndPoints", kApiNamespace)
      .Field<&LoginSummonerLevelAndPoints::summonerLevel>("summonerLevel");
  DefineStruct<LoginAllSummonerData>(registry, "LoginAllSummonerData", kApiNamespace)
      .Field<&LoginAllSummonerData::summonerLevelAndPoints>("summonerLevelAndPoints");
  DefineStruct<LoginSimpleMessage>(registry, "LoginSimpleMessage", kApiNamespace)
      .Field<&LoginSimpleMessage::accountId>("accountId")
      .Field<&LoginSimpleMessage::msgId>("msgId")
      .Field<&LoginSimpleMessage::type>("type")
      .Field<&LoginSimpleMessage::params>("params");
  DefineStruct<LoginDataPacket>(registry, "LoginDataPacket", kApiNamespace)
      .Field<&LoginDataPacket::allSummonerData>("allSummonerData")
      .Field<&LoginDataPacket::simpleMessages>("simpleMessages");
  RegisterLoginSessionStates(registry);
  DefineStruct<LoginSession>(registry, "LoginSession", kApiNamespace)
      .Field<&LoginSession::state>("state")
      .Field<&LoginSession::summonerId>("summonerId")
      .Field<&LoginSession::accountId>("accountId");
  RegisterGameflowPhase(registry);
  DefineStruct<GameflowSession>(registry, "GameflowSession", kApiNamespace)
      .Field<&GameflowSession::phase>("phase");
}

void RegisterLootFile(TypeRegistry& registry) {
  DefineStruct<LootItemGdsResource>(registry, "LootItemGdsResource", kApiNamespace)
      .Field<&LootItemGdsResource::id>("id")
      .Field<&LootItemGdsResource::name>("name")
      .Field<&LootItemGdsResource::description>("description")
      .Field<&LootItemGdsResource::image>("image")
      .Field<&LootItemGdsResource::startDate>("startDate")
      .Field<&LootItemGdsResource::endDate>("endDate")
      .Field<&LootItemGdsResource::mappedStoreId>("mappedStoreId")
      .Field<&LootItemGdsResource::lifetimeMax>("lifetimeMax")
      .Field<&LootItemGdsResource::autoRedeem>("autoRedeem")
      .Field<&LootItemGdsResource::rarity>("rarity")
      .Field<&LootItemGdsResource::type>("type");
  DefineStruct<LootRecipeGdsResource>(registry, "LootRecipeGdsResource", kApiNamespace)
      .Field<&LootRecipeGdsResource::id>("id")
      .Field<&LootRecipeGdsResource::description>("description")
      .Field<&LootRecipeGdsResource::contextMenuText>("contextMenuText")
      .Field<&LootRecipeGdsResource::requirementText>("requirementText")
      .Field<&LootRecipeGdsResource::imagePath>("imagePath");
  DefineStruct<LootTableGdsResource>(registry, "LootTableGdsResource", kApiNamespace)
      .Field<&LootTableGdsResource::id>("id")
      .Field<&LootTableGdsResource::description>("description")
      .Field<&LootTableGdsResource::descriptionLong>("descriptionLong")
      .Field<&LootTableGdsResource::image>("image");
  DefineStruct<LootDataGdsResource>(registry, "LootDataGdsResource", kApiNamespace)
      .Field<&LootDataGdsResource::LootItems>("LootItems")
      .Field<&LootDataGdsResource::LootRecipes>("LootRecipes")
      .Field<&LootDataGdsResource::LootTables>("LootTables");
}

}  // namespace

void RegisterSiblingResources(TypeRegistry& registry) {
  RegisterCollections(registry);
  RegisterSession(registry);
  RegisterLootFile(registry);
}

}  // namespace Kest::Client::Loot::Api
