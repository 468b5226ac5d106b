#include "loot/wire/sibling_resources.h"

#include "binding/convert/define_struct.h"

namespace Kest::Client::Loot::Api {
namespace {

void RegisterCollections(TypeRegistry& registry) {
  DefineStruct<CollectionsRental>(registry, "CollectionsRental", kApiNamespace)
      .Field<&CollectionsRental::rented>();
  DefineStruct<CollectionsOwnership>(registry, "CollectionsOwnership", kApiNamespace)
      .Fields<&CollectionsOwnership::freeToPlayReward, &CollectionsOwnership::owned,
              &CollectionsOwnership::rental>();
  DefineStruct<CollectionsChampionSkinMinimal>(registry, "CollectionsChampionSkinMinimal",
                                               kApiNamespace)
      .Fields<&CollectionsChampionSkinMinimal::championId, &CollectionsChampionSkinMinimal::id,
              &CollectionsChampionSkinMinimal::name, &CollectionsChampionSkinMinimal::ownership,
              &CollectionsChampionSkinMinimal::splashPath,
              &CollectionsChampionSkinMinimal::tilePath>();
  DefineStruct<CollectionsChampionMinimal>(registry, "CollectionsChampionMinimal", kApiNamespace)
      .Fields<&CollectionsChampionMinimal::id, &CollectionsChampionMinimal::ownership>();
  DefineStruct<CollectionsWardSkin>(registry, "CollectionsWardSkin", kApiNamespace)
      .Fields<&CollectionsWardSkin::id, &CollectionsWardSkin::name, &CollectionsWardSkin::ownership,
              &CollectionsWardSkin::wardImagePath, &CollectionsWardSkin::wardShadowImagePath>();
  DefineStruct<CollectionsSummonerIcons>(registry, "CollectionsSummonerIcons", kApiNamespace)
      .Field<&CollectionsSummonerIcons::icons>();
  DefineStruct<GameDataSummonerIcon>(registry, "GameDataSummonerIcon", kApiNamespace)
      .Fields<&GameDataSummonerIcon::id, &GameDataSummonerIcon::iconPath>();
  DefineStruct<GameDataSummonerEmote>(registry, "GameDataSummonerEmote", kApiNamespace)
      .Fields<&GameDataSummonerEmote::id, &GameDataSummonerEmote::name,
              &GameDataSummonerEmote::inventoryIcon, &GameDataSummonerEmote::description>();
  DefineStruct<CollectionsEmote>(registry, "CollectionsEmote", kApiNamespace)
      .Fields<&CollectionsEmote::itemId, &CollectionsEmote::ownershipType>();
}

void RegisterSession(TypeRegistry& registry) {
  DefineStruct<Summoner>(registry, "Summoner", kApiNamespace).Field<&Summoner::summonerLevel>();
  DefineStruct<LoginSummonerLevelAndPoints>(registry, "LoginSummonerLevelAndPoints", kApiNamespace)
      .Field<&LoginSummonerLevelAndPoints::summonerLevel>();
  DefineStruct<LoginAllSummonerData>(registry, "LoginAllSummonerData", kApiNamespace)
      .Field<&LoginAllSummonerData::summonerLevelAndPoints>();
  DefineStruct<LoginSimpleMessage>(registry, "LoginSimpleMessage", kApiNamespace)
      .Fields<&LoginSimpleMessage::accountId, &LoginSimpleMessage::msgId, &LoginSimpleMessage::type,
              &LoginSimpleMessage::params>();
  DefineStruct<LoginDataPacket>(registry, "LoginDataPacket", kApiNamespace)
      .Fields<&LoginDataPacket::allSummonerData, &LoginDataPacket::simpleMessages>();
  RegisterLoginSessionStates(registry);
  DefineStruct<LoginSession>(registry, "LoginSession", kApiNamespace)
      .Fields<&LoginSession::state, &LoginSession::summonerId, &LoginSession::accountId>();
  RegisterGameflowPhase(registry);
  DefineStruct<GameflowSession>(registry, "GameflowSession", kApiNamespace)
      .Field<&GameflowSession::phase>();
}

void RegisterLootFile(TypeRegistry& registry) {
  DefineStruct<LootItemGdsResource>(registry, "LootItemGdsResource", kApiNamespace)
      .Fields<&LootItemGdsResource::id, &LootItemGdsResource::name,
              &LootItemGdsResource::description, &LootItemGdsResource::image,
              &LootItemGdsResource::startDate, &LootItemGdsResource::endDate,
              &LootItemGdsResource::mappedStoreId, &LootItemGdsResource::lifetimeMax,
              &LootItemGdsResource::autoRedeem, &LootItemGdsResource::rarity,
              &LootItemGdsResource::type>();
  DefineStruct<LootRecipeGdsResource>(registry, "LootRecipeGdsResource", kApiNamespace)
      .Fields<&LootRecipeGdsResource::id, &LootRecipeGdsResource::description,
              &LootRecipeGdsResource::contextMenuText, &LootRecipeGdsResource::requirementText,
              &LootRecipeGdsResource::imagePath>();
  DefineStruct<LootTableGdsResource>(registry, "LootTableGdsResource", kApiNamespace)
      .Fields<&LootTableGdsResource::id, &LootTableGdsResource::description,
              &LootTableGdsResource::descriptionLong, &LootTableGdsResource::image>();
  DefineStruct<LootDataGdsResource>(registry, "LootDataGdsResource", kApiNamespace)
      .Fields<&LootDataGdsResource::LootItems, &LootDataGdsResource::LootRecipes,
              &LootDataGdsResource::LootTables>();
}

}  // namespace

void RegisterSiblingResources(TypeRegistry& registry) {
  RegisterCollections(registry);
  RegisterSession(registry);
  RegisterLootFile(registry);
}

}  // namespace Kest::Client::Loot::Api
