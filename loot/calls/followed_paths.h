// Paths of the sibling resources that the plugin follows from start to stop.
#pragma once

#include <string_view>

namespace Kest::Client::Loot {

inline constexpr std::string_view kConfigEnabledPath =
    "/tav-platform-config/v1/namespaces/LootConfig/Enabled";
inline constexpr std::string_view kConfigClientEnabledPath =
    "/tav-platform-config/v1/namespaces/LootConfig/PxhEnabled";
inline constexpr std::string_view kConfigGoalPath =
    "/tav-platform-config/v1/namespaces/LootConfig/InitializationGoalFlags";
inline constexpr std::string_view kConfigMinimumLevelPath =
    "/tav-platform-config/v1/namespaces/LootConfig/MinSummonerLevel";
inline constexpr std::string_view kConfigChestEnabledPath =
    "/tav-platform-config/v1/namespaces/LootConfig/NewPlayerChestEnabled";
inline constexpr std::string_view kSummonerPath = "/tav-summoner/v1/current-summoner";
inline constexpr std::string_view kLoginPacketPath = "/tav-login/v1/login-data-packet";
inline constexpr std::string_view kLoginSessionPath = "/tav-login/v1/session";
inline constexpr std::string_view kGameflowSessionPath = "/tav-gameflow/v1/session";

}  // namespace Kest::Client::Loot
