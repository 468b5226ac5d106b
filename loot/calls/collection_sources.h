// CollectionSources follows what the signed-in player owns: champions with their skins, ward skins,
// summoner icons and emotes. Each answer is kept, enriches the stored items and sets the source's
// readiness bits.
// Threads: module tasks only. Follow and Drop do not wait; the champions' handler does.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "client/sibling_client.h"
#include "loot/calls/loot_actions.h"
#include "loot/model/collections.h"

namespace Kest::Client::Loot {

class CollectionSources {
 public:
  // All outlive it.
  CollectionSources(SiblingClient& client, Collections& collections, LootActions& actions)
      : client_(client), collections_(collections), actions_(actions) {}

  // Subscribes to the four resources of that summoner, once: those of an earlier call are dropped
  // first.
  void Follow(uint64_t summonerId);
  // Ends the subscriptions. What they brought stays.
  void Drop();

 private:
  using Champions = std::vector<Api::CollectionsChampionMinimal>;
  using Skins = std::vector<Api::CollectionsChampionSkinMinimal>;

  // `keep` stores an answer; a deleted resource is no answer and changes nothing.
  template <class T, class Keep>
  void FollowOne(std::string url, uint8_t readinessBits, Keep keep);
  void FollowChampions(const std::string& inventory);
  // Reads the skins that belong to the champions just kept.
  void OnChampions(const std::string& skinsUrl);

  SiblingClient& client_;
  Collections& collections_;
  LootActions& actions_;
  std::vector<std::string> followed_;  // urls, in the order they were subscribed
  uint64_t latestChampions_ = 0;  // counts their answers, and Drop: tells skins that come too late
};

}  // namespace Kest::Client::Loot
