#include "loot/loot_subscriptions.h"

#include <string_view>
#include <type_traits>

#include "client/service_proxy.h"
#include "client/sibling_client.h"
#include "loot/calls/followed_paths.h"
#include "loot/calls/grant_notices.h"
#include "loot/calls/inbound_messages.h"
#include "loot/calls/new_player_chest.h"
#include "loot/calls/source_readiness.h"

namespace Kest::Client::Loot {
namespace {

// Without `onDeleted` the deletion of the resource changes nothing.
template <class Object, class T>
void Follow(SiblingClient& client, std::string_view url, Object& object, void (Object::*onValue)(T),
            void (Object::*onDeleted)() = nullptr) {
  using Value = std::remove_cvref_t<T>;
  client.Subscribe<Value>(url,
                          [&object, onValue, onDeleted](const Value* value, ResourceEventType) {
                            if (value != nullptr) {
                              (object.*onValue)(*value);
                            } else if (onDeleted != nullptr) {
                              (object.*onDeleted)();
                            }
                          });
}

}  // namespace

void LootSubscriptions::Start() {
  const auto& [enablement, readiness, newPlayerChest, session, messages, grants] = handlers_;
  proxy_.SubscribeSvds(
      "com.kestgames.platform.messaging.persistence.SimpleDialogMessage",
      [&target = messages](const PluginSvdsEvent& event) { target.OnMasteryGrant(event); });
  Follow(client_, kConfigEnabledPath, enablement, &LootEnablement::SetConfigEnabled);
  Follow(client_, kConfigClientEnabledPath, enablement, &LootEnablement::SetClientEnabled);
  Follow(client_, kConfigGoalPath, readiness, &SourceReadiness::SetGoal);
  Follow(client_, kConfigMinimumLevelPath, newPlayerChest, &NewPlayerChest::SetMinimumLevel);
  Follow(client_, kConfigChestEnabledPath, newPlayerChest, &NewPlayerChest::SetEnabled);
  Follow(client_, kSummonerPath, newPlayerChest, &NewPlayerChest::OnSummoner);
  Follow(client_, kLoginPacketPath, *this, &LootSubscriptions::OnLoginDataPacket);
  Follow(client_, kLoginSessionPath, session, &PlayerSession::OnLoginSession,
         &PlayerSession::OnLoginSessionDeleted);
  Follow(client_, kGameflowSessionPath, grants, &GrantNotices::OnGameflowSession,
         &GrantNotices::OnGameflowSessionDeleted);
}

void LootSubscriptions::OnLoginDataPacket(const Api::LoginDataPacket& packet) {
  handlers_.newPlayerChest.SetSummonerLevel(
      packet.allSummonerData.summonerLevelAndPoints.summonerLevel);
  handlers_.messages.OnLoginDataPacket(packet);
}

}  // namespace Kest::Client::Loot
