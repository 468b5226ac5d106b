#include "loot/loot_plugin.h"

#include "log/logger.h"
#include "log/trace.h"

namespace Kest::Client::Loot {

LootPlugin::LootPlugin(PluginRuntime& runtime)
    : PluginBase(runtime),
      inventory_(state_),
      client_(Host(), Module(), FullName()),
      proxy_(Host(), Module(), client_, FullName()),
      views_(client_, state_),
      publisher_(Module(), client_, state_, views_),
      retrieval_(proxy_, state_, inventory_, *this),
      transactions_(proxy_, state_.status, inventory_, *this),
      configuration_(proxy_, client_),
      newPlayerChest_(Module(), proxy_, state_.status, *this),
      sources_(client_, state_.collections, *this),
      tournamentLogos_(client_, state_.collections, *this),
      inbound_(proxy_, *this),
      gameDataLoader_(client_, state_.gameData) {}

bool LootPlugin::Initialise() {
  proxy_.Start();
  SubscribeAll();
  gameDataLoader_.LoadProfileIcons();
  gameDataLoader_.LoadLootDefinitions(lootDefinitionPath_);
  gameDataLoader_.LoadSummonerEmotes();
  Trace("%s initialized", FullName().c_str());
  return true;
}

void LootPlugin::Shutdown() {
  proxy_.Finalise();
}

void LootPlugin::RequestPublication() {
  publisher_.Request();
}

void LootPlugin::PostRetrieval() {
  Module().PostTask("LootPlugin.RefreshPlayerLoot", [this] {
    // Disabled or too recent: both leave the store as it is, like a failure, which logs itself.
    static_cast<void>(retrieval_.Retrieve(/*forced=*/false));
  });
}

void LootPlugin::OnSourceAnswered(uint8_t readinessBits) {
  inventory_.ReassembleAll();
  publisher_.Request();
  SetReadiness(readinessBits, state_.readiness.goal());
}

void LootPlugin::LoadTournamentLogos() {
  tournamentLogos_.Load();
}

void LootPlugin::PostTournamentLogoLoad() {
  Module().PostTask("LootPlugin.LoadTournamentLogoInventory", [this] { LoadTournamentLogos(); });
}

void LootPlugin::RecomputeEnabled() {
  if (!state_.status.RecomputeEnabled()) return;
  const bool enabled = state_.status.enabled;
  LogAlways("Loot %s", enabled ? "enabled" : "disabled");
  newPlayerChest_.Schedule();
  client_.Publish("/tav-loot/v1/enabled", ResourceEventType::kUpdate, enabled);
}

void LootPlugin::SetReadiness(uint8_t bits, uint8_t goal) {
  Readiness& readiness = state_.readiness;
  const bool turned = readiness.Set(bits, goal);
  LogAlways("Loot %s: %hhu/%hhu", readiness.Ready() ? "ready" : "not yet ready", readiness.flags(),
            readiness.goal());
  if (turned) client_.Publish("/tav-loot/v1/ready", ResourceEventType::kUpdate, readiness.Ready());
}

}  // namespace Kest::Client::Loot
