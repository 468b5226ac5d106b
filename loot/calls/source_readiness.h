// SourceReadiness applies what a data source brought, and publishes "/tav-loot/v1/ready" when the
// plugin becomes ready or stops being so. Threads: module tasks only; it does not wait.
#pragma once

#include <cstdint>

#include "loot/state/readiness.h"

namespace Kest::Client {
class SiblingClient;
}  // namespace Kest::Client

namespace Kest::Client::Loot {

class LootInventory;
class LootPublisher;

class SourceReadiness {
 public:
  // All outlive it.
  SourceReadiness(SiblingClient& client, LootInventory& inventory, LootPublisher& publisher)
      : client_(client), inventory_(inventory), publisher_(publisher) {}

  // A source has responded and its data is in the collections: assembles every stored item again,
  // requests a publication, then sets the source's bits.
  void OnSourceRead(uint8_t bits);

  void SetGoal(uint8_t goal) { Set(0, goal); }
  bool Ready() const { return readiness_.Ready(); }

 private:
  void Set(uint8_t bits, uint8_t goal);

  SiblingClient& client_;
  LootInventory& inventory_;
  LootPublisher& publisher_;
  Readiness readiness_;
};

}  // namespace Kest::Client::Loot
