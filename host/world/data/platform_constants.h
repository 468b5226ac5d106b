// Names the platform uses on the wire and that more than one file needs.
#pragma once

#include <array>
#include <string_view>

namespace Kest::Host {

constexpr std::string_view kLootService = "loot";
constexpr std::string_view kClientFacadeService = "clientFacadeService";

constexpr std::string_view kRetrievalMethod = "getAllPlayerLootAndAllDefinitions";
constexpr std::string_view kClientConfigurationMethod = "getClientConfiguration";
constexpr std::string_view kCraftMethod = "craftPlayerLootWithRefId";
constexpr std::string_view kRedeemMethod = "redeemPlayerLoot";
constexpr std::string_view kNewPlayerChestMethod = "checkAndGrantNewPlayerChest";
constexpr std::string_view kAcknowledgeMethod = "callPersistenceMessaging";
inline constexpr std::array kServiceMethods = {kRetrievalMethod,      kClientConfigurationMethod,
                                               kCraftMethod,          kRedeemMethod,
                                               kNewPlayerChestMethod, kAcknowledgeMethod};

// Whether the method's result has a status word.
constexpr bool HasStatusWord(std::string_view method) {
  return method == kCraftMethod || method == kRedeemMethod || method == kNewPlayerChestMethod;
}

constexpr std::string_view kDialogMessageSubtopic =
    "com.kestgames.platform.messaging.persistence.SimpleDialogMessage";
constexpr std::string_view kMasteryGrantType = "championMasteryLootGrant";
constexpr std::string_view kChampionTokenType = "CHAMPION_TOKEN";
constexpr std::string_view kTournamentLogoInventory = "TOURNAMENT_LOGO";
// The names of the configuration that have a meaning.
inline constexpr std::array<std::string_view, 3> kConfigurationSwitches = {"Enabled", "PxhEnabled",
                                                                           "NewPlayerChestEnabled"};
inline constexpr std::array<std::string_view, 2> kConfigurationNumbers = {"InitializationGoalFlags",
                                                                          "MinSummonerLevel"};
constexpr std::string_view kConfigurationPath = "/tav-platform-config/v1/namespaces/LootConfig/";

}  // namespace Kest::Host
