// The library's one export.
#include <memory>

#include "loot/loot_plugin.h"
#include "plugin/handshake.h"
#include "plugin/host_interface.h"

void KEST_ABI load_tav_loot(KestHandshakeBlock* block) noexcept {
  Kest::Handshake(block, "tav-loot",
                  [](Kest::PluginRuntime& runtime) -> std::unique_ptr<Kest::PluginBase> {
                    return std::make_unique<Kest::Client::Loot::LootPlugin>(runtime);
                  });
}
