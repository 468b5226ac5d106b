// SourceReadiness applies what a data source brought, and publishes "/tav-loot/v1/ready" when the
// plugin becomes ready or stops being so: it is ready while every goal bit is set. Bits are only
// ever added, a logout included; the goal may change at any time.
// Threads: module tasks only; it does not wait.
#pragma once

#include <cstdint>

#include "loot/calls/forward.h"

namespace Kest::Client::Loot {

// One bit for each data source that items are assembled from.
enum ReadinessBit : uint8_t {
  kReadyChampions = 1,
  kReadySkins = 2,
  kReadyWardSkins = 4,
  kReadySummonerIcons = 8,
  kReadyTournamentLogos = 16,
  kReadyEmotes = 32,
};

class SourceReadiness {
 public:
  // All outlive it.
  SourceReadiness(SiblingClient& client, LootInventory& inventory, LootPublisher& publisher)
      : client_(client), inventory_(inventory), publisher_(publisher) {}

  // A source has responded and its data is in the collections: assembles every stored item again,
  // requests a publication, then sets the source's bits.
  void OnSourceRead(uint8_t bits);

  void SetGoal(uint8_t goal) { Set(0, goal); }

  // A goal of 0 is always reached, one with a bit that has no source never.
  bool Ready() const { return MissingBits() == 0; }

  uint8_t goal() const { return goal_; }
  uint8_t RespondedBits() const { return flags_; }
  // Of the goal, what has not responded.
  uint8_t MissingBits() const { return static_cast<uint8_t>(goal_ & ~flags_); }

 private:
  void Set(uint8_t bits, uint8_t goal);

  SiblingClient& client_;
  LootInventory& inventory_;
  LootPublisher& publisher_;
  uint8_t flags_ = 0;
  uint8_t goal_ = 63;          // all six sources
  bool isKnownReady_ = false;  // what was published last
};

}  // namespace Kest::Client::Loot
