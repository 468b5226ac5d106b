// CollectionSources follows what the signed-in player owns: champions with their skins, ward skins,
// summoner icons and emotes. Each response is kept and reported as read.
// Threads: module tasks only. Follow and Drop do not wait; the champions' handler does.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "loot/calls/forward.h"
#include "loot/calls/in_progress.h"
#include "loot/calls/source_readiness.h"
#include "loot/calls/source_wait.h"
#include "loot/model/collections.h"

namespace Kest::Client::Loot {

class CollectionSources {
 public:
  // All outlive it.
  CollectionSources(SiblingClient& client, Collections& collections, SourceReadiness& readiness)
      : client_(client), collections_(collections), readiness_(readiness) {}

  // Subscribes to the four resources of that summoner, once: those of an earlier call are dropped
  // first.
  void Follow(uint64_t summonerId);
  // Ends the subscriptions. What they brought stays.
  void Drop();

  // Why the newest value of the bit's resource, for the skins that of the champions, did not
  // convert; empty when it did.
  std::string_view ConversionFailureOf(ReadinessBit bit) const;
  // What the source of a bit waits for, if it has not responded. REQUIRES: one of its four
  // resources, or the skins, sets the bit.
  SourceWait WaitOf(ReadinessBit bit) const;

 private:
  using Champions = std::vector<Api::CollectionsChampionMinimal>;
  using Skins = std::vector<Api::CollectionsChampionSkinMinimal>;

  // `keep` stores a value; a deleted resource changes nothing.
  template <class T, class Keep>
  void FollowOne(std::string url, uint8_t readinessBits, Keep keep);
  void FollowChampions(const std::string& inventory);
  // The resource that sets the bit; null when none is followed.
  const std::string* UrlOf(ReadinessBit bit) const;
  // Reads the skins that belong to the champions just kept.
  void OnChampions(const std::string& skinsUrl);

  struct Followed {
    std::string url;
    uint8_t bits;
  };

  SiblingClient& client_;
  Collections& collections_;
  SourceReadiness& readiness_;
  std::vector<Followed> followed_;  // in the order they were subscribed
  const InProgress skinsRequests_;
  std::string skinsUrl_;      // of the last request
  std::string skinsFailure_;  // of the last request; empty when it did not fail
  uint64_t champions_ = 0;    // events so far
  uint64_t skinsOf_ = 0;      // the last of them whose skins are kept, or that came before Drop
};

}  // namespace Kest::Client::Loot
