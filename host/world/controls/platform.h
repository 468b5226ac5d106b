// All parts of the emulated platform of one world, wired together.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "base/platform.h"
#include "host/faults/fault_rules.h"
#include "host/world/data/collections.h"
#include "host/world/data/world_data.h"
#include "host/world/loot/loot_service.h"
#include "host/world/platform/platform_service_proxy.h"
#include "host/world/platform/platform_session.h"
#include "host/world/platform/resource_board.h"

namespace Kest::Host {

struct Platform {
  Platform(WorldData worldData, uint64_t seed)
      : data(std::move(worldData)),
        board(outbox),
        session(data, board),
        loot(data, seed),
        faults(seed),
        proxy(data, loot, session, faults, outbox, now, ~seed) {
    outbox.clear();  // no subscription can exist yet
  }
  Platform(const Platform&) = delete;
  Platform& operator=(const Platform&) = delete;

  // In order of construction: later parts refer to earlier ones.
  std::function<int64_t()> now = MonotonicMilliseconds;
  WorldData data;  // the present state is in it
  std::vector<WorldEvent> outbox;
  Inventory& inventory = data.inventory;
  PlatformCollections& collections = data.collections;
  ResourceBoard board;
  PlatformSession session;
  LootService loot;
  FaultRules faults;
  PlatformServiceProxy proxy;
};

}  // namespace Kest::Host
