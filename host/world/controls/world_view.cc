#include "host/world/controls/world_view.h"

#include "base/platform.h"

namespace Kest::Host {
namespace {

JsonValue SessionJson(const PlatformSession& session) {
  if (!session.ids()) return JsonValue();
  return JsonValue::Object{{"summonerId", session.ids()->summonerId},
                           {"accountId", session.ids()->accountId}};
}

JsonValue CollectionsJson(const Collections& collections) {
  JsonValue::Object tables;
  for (size_t i = 0; i < kCollectionCount; ++i) {
    const auto collection = static_cast<Collection>(i);
    JsonValue::Object table;
    for (const auto& [id, thing] : collections[collection]) {
      table.push_back({std::to_string(id), OwnershipWord(thing.ownership)});
    }
    tables.push_back({std::string(CollectionName(collection)), std::move(table)});
  }
  return tables;
}

JsonValue ConfigurationJson(const PlatformSession& session) {
  JsonValue::Object values;
  for (const auto& [name, value] : session.configuration()) values.push_back({name, value});
  return values;
}

JsonValue AcknowledgementsJson(const ServiceProxy& proxy) {
  JsonValue::Array list;
  for (const auto& acknowledgement : proxy.acknowledgements()) {
    list.push_back(JsonValue::Object{{"accountId", acknowledgement.accountId},
                                     {"msgId", acknowledgement.msgId},
                                     {"command", acknowledgement.command}});
  }
  return list;
}

JsonValue CallCountsJson(const ServiceProxy& proxy) {
  JsonValue::Object counts;
  for (const auto& [call, count] : proxy.callCounts()) counts.push_back({call, count});
  return counts;
}

JsonValue OutstandingJson(ServiceProxy& proxy) {
  const int64_t now = MonotonicMilliseconds();
  JsonValue::Array list;
  for (const auto& call : proxy.Outstanding()) {
    list.push_back(JsonValue::Object{
        {"key", call.key}, {"call", call.call}, {"milliseconds", call.due - now}});
  }
  return list;
}

JsonValue LoginMessagesJson(const PlatformSession& session) {
  JsonValue::Array ids;
  for (const LoginMessage& message : session.loginMessages()) ids.push_back(message.msgId);
  return ids;
}

}  // namespace

JsonValue WorldStateJson(Platform& platform) {
  JsonValue::Array messages;
  for (const auto& [name, message] : platform.data.messages) messages.push_back(name);
  const auto& phase = platform.session.phase();
  return JsonValue::Object{{"name", platform.data.name},
                           {"session", SessionJson(platform.session)},
                           {"summonerLevel", platform.session.summonerLevel()},
                           {"phase", phase ? JsonValue(*phase) : JsonValue()},
                           {"configuration", ConfigurationJson(platform.session)},
                           {"inventory", InventoryJson(platform.inventory)},
                           {"collections", CollectionsJson(platform.collections)},
                           {"newPlayerChestGranted", platform.loot.newPlayerChestGranted()},
                           {"loginMessages", LoginMessagesJson(platform.session)},
                           {"messages", std::move(messages)},
                           {"acknowledgements", AcknowledgementsJson(platform.proxy)},
                           {"serviceCalls", CallCountsJson(platform.proxy)},
                           {"outstanding", OutstandingJson(platform.proxy)}};
}

}  // namespace Kest::Host
