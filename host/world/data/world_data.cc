#include "host/world/data/world_data.h"

#include <algorithm>

#include "host/world/data/platform_constants.h"

namespace Kest::Host {
namespace {

constexpr std::string_view kPhases[] = {"None",
                                        "Lobby",
                                        "Matchmaking",
                                        "CheckedIntoTournament",
                                        "ReadyCheck",
                                        "ChampSelect",
                                        "GameStart",
                                        "FailedToLaunch",
                                        "InProgress",
                                        "Reconnect",
                                        "WaitingForStats",
                                        "PreEndOfGame",
                                        "EndOfGame",
                                        "TerminatedInError"};

}  // namespace

bool IsGameflowPhase(std::string_view word) {
  return std::find(std::begin(kPhases), std::end(kPhases), word) != std::end(kPhases);
}

bool IsLootRefId(std::string_view text) {
  return !text.empty() && text.size() <= 64 && text.find_first_of("/?#") == std::string_view::npos;
}

std::string LootKeyFault(const WorldData& data, const LootKey& key) {
  const LootDefinition* definition = data.FindDefinition(key.lootName);
  if (definition == nullptr) return "unknown loot name \"" + key.lootName + "\"";
  const bool isNumber =
      !key.refId.empty() &&
      std::all_of(key.refId.begin(), key.refId.end(), [](char c) { return c >= '0' && c <= '9'; });
  if (definition->type == kChampionTokenType && !isNumber) {
    return "a champion token needs a champion's id as \"refId\"";
  }
  if (!key.refId.empty() && !IsLootRefId(key.refId)) {
    return "a reference id is at most 64 bytes long and free of \"/\", \"?\" and \"#\"";
  }
  return "";
}

}  // namespace Kest::Host
