// The library's export as the simulation has it: work on more than two items has pauses.
#include <memory>

#include "loot/loot_plugin.h"
#include "plugin/handshake.h"
#include "plugin/host_interface.h"

void KEST_ABI load_tav_loot(KestHandshakeBlock* block) noexcept {
  static constexpr size_t kItemsInSlice = 2;
  Kest::Handshake(block, "tav-loot",
                  [](Kest::PluginRuntime& runtime) -> std::unique_ptr<Kest::PluginBase> {
                    return std::make_unique<Kest::Client::Loot::LootPlugin>(runtime, kItemsInSlice);
                  });
}
