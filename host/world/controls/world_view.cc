#include "host/world/controls/world_view.h"

#include "host/world/file/world_writer.h"

namespace Kest::Host {
namespace {

Json SessionJson(const PlatformSession& session) {
  if (!session.ids()) return Json();
  return Json{{"summonerId", session.ids()->summonerId}, {"accountId", session.ids()->accountId}};
}

Json CollectionsJson(const PlatformCollections& collections) {
  Json tables = Json::object();
  for (size_t i = 0; i < kCollectionCount; ++i) {
    const auto collection = static_cast<Collection>(i);
    Json table = Json::object();
    for (const auto& [id, thing] : collections[collection]) {
      table.push_back({std::to_string(id), OwnershipName(thing.ownership)});
    }
    tables.push_back({std::string(CollectionName(collection)), std::move(table)});
  }
  return tables;
}

Json OutstandingJson(PlatformServiceProxy& proxy, int64_t now) {
  Json list = Json::array();
  for (const auto& call : proxy.Outstanding()) {
    list.push_back(Json{{"key", call.key}, {"call", call.call}, {"milliseconds", call.due - now}});
  }
  return list;
}

Json LoginMessagesJson(const PlatformSession& session) {
  Json ids = Json::array();
  for (const LoginMessage& message : session.loginMessages()) ids.push_back(message.msgId);
  return ids;
}

}  // namespace

Json PresentWorldJson(Platform& platform) {
  platform.data.state.random = platform.loot.randomPlace();
  platform.data.state.decidesSignIn = true;
  return WorldFileJson(platform.data);
}

Json WorldStateJson(Platform& platform) {
  Json messages = Json::array();
  for (const auto& [name, message] : platform.data.messages) messages.push_back(name);
  const auto& phase = platform.session.phase();
  return Json{{"name", platform.data.name},
              {"session", SessionJson(platform.session)},
              {"summonerLevel", platform.session.summonerLevel()},
              {"phase", phase ? Json(*phase) : Json()},
              {"configuration", platform.session.configuration()},
              {"inventory", InventoryJson(platform.inventory)},
              {"collections", CollectionsJson(platform.collections)},
              {"newPlayerChestGranted", platform.data.state.newPlayerChestGranted},
              {"loginMessages", LoginMessagesJson(platform.session)},
              {"messages", std::move(messages)},
              {"acknowledgements", platform.proxy.acknowledgements()},
              {"serviceCalls", platform.proxy.callCounts()},
              {"outstanding", OutstandingJson(platform.proxy, platform.now())}};
}

}  // namespace Kest::Host
