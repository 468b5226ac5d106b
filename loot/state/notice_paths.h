// Paths of the two lists that tell the player about new loot.
#pragma once

namespace Kest::Client::Loot {

inline constexpr const char* kNotificationsPath = "/tav-loot/v1/player-loot-notifications";
inline constexpr const char* kGrantsPath = "/tav-loot/v1/loot-grants";

}  // namespace Kest::Client::Loot
