#include "host/world/file/world_writer.h"

#include <algorithm>
#include <map>

#include "host/world/data/platform_constants.h"
#include "host/world/file/world_sections.h"

namespace Kest::Host {
namespace {

Json PlayerJson(const WorldData& data) {
  Json inventory = Json::array();
  for (const auto& [key, record] : data.inventory.records()) {
    Json item = Json{{"lootName", key.lootName}};
    if (!key.refId.empty()) item["refId"] = key.refId;
    item["count"] = record.count;
    const LootDefinition* definition = data.FindDefinition(key.lootName);
    if (definition == nullptr || definition->expiryTime != record.expiryTime) {
      item["expiryTime"] = record.expiryTime;
    }
    inventory.push_back(std::move(item));
  }
  return Json{{"summonerId", data.player.summonerId},
              {"accountId", data.player.accountId},
              {"summonerLevel", data.player.summonerLevel},
              {"displayName", data.player.displayName},
              {"inventory", std::move(inventory)}};
}

// Whether the section "configuration" takes the value; any other goes to the state.
bool IsOrdinary(const std::string& name, const Json& value) {
  const auto isIn = [&name](const auto& names) {
    return std::find(names.begin(), names.end(), name) != names.end();
  };
  if (isIn(kConfigurationSwitches)) return value.is_boolean();
  if (!isIn(kConfigurationNumbers) || !value.is_number_unsigned()) return false;
  return value.get<uint64_t>() <= (name == kConfigurationNumbers[0] ? 255 : uint64_t{kMax32});
}

Json ConfigurationJson(const WorldData& data, bool ordinary) {
  Json values = Json::object();
  for (const auto& [name, value] : data.configuration) {
    if (IsOrdinary(name, value) == ordinary) values[name] = value;
  }
  return values;
}

Json ServiceJson(const WorldData& data) {
  Json service = Json{{"latency", data.latency}, {"latencies", data.latencies}};
  if (!data.newPlayerChest.empty()) service["newPlayerChest"] = data.newPlayerChest;
  service["versions"] = Json{{"lootItems", data.versions.lootItems},
                             {"recipes", data.versions.recipes},
                             {"queries", data.versions.queries}};
  service["clientConfiguration"] = data.clientConfiguration;
  return service;
}

template <typename Records>
Json RecordsJson(const Records& records) {
  Json list = Json::array();
  for (const auto& record : records) list.push_back(record.record);
  return list;
}

Json OddsJson(const WorldData& data) {
  const std::map<std::string_view, const std::vector<OddsEntry>*> sorted = [&data] {
    std::map<std::string_view, const std::vector<OddsEntry>*> tables;
    for (const auto& [name, entries] : data.odds) tables.emplace(name, &entries);
    return tables;
  }();
  Json odds = Json::object();
  for (const auto& [name, entries] : sorted) {
    Json& table = odds[std::string(name)] = Json::array();
    for (const OddsEntry& entry : *entries) {
      table.push_back(Json{
          {"lootName", entry.lootName}, {"weight", entry.weight}, {"quantity", entry.quantity}});
    }
  }
  return odds;
}

Json LoginMessagesJson(const WorldData& data) {
  Json messages = Json::array();
  for (const LoginMessage& message : data.loginMessages) {
    messages.push_back(
        Json{{"msgId", message.msgId}, {"type", message.type}, {"params", message.params}});
  }
  return messages;
}

Json MessagesJson(const WorldData& data) {
  Json messages = Json::array();
  for (const auto& [name, message] : data.messages) {
    messages.push_back(Json{{"name", name},
                            {"clientId", message.clientId},
                            {"subtopic", message.subtopic},
                            {"typeName", message.typeName},
                            {"body", message.body}});
  }
  return messages;
}

template <typename Value>
Json OrNull(const std::optional<Value>& value) {
  return value ? Json(*value) : Json();
}

Json StateJson(const WorldData& data) {
  const PlatformState& state = data.state;
  Json json = Json::object();
  json["signedIn"] = state.signedIn ? Json{{"summonerId", state.signedIn->summonerId},
                                           {"accountId", state.signedIn->accountId}}
                                    : Json();
  json["phase"] = OrNull(state.phase);
  json["newPlayerChestGranted"] = state.newPlayerChestGranted;
  json["withholdsCollections"] = state.withholdsCollections;
  if (state.token) json["token"] = OrNull(state.token->token);
  if (state.random) {
    json["random"] = Json{{"seed", state.random->seed}, {"drawn", state.random->drawn}};
  }
  json["configuration"] = ConfigurationJson(data, false);
  return json;
}

}  // namespace

Json WorldFileJson(const WorldData& data) {
  Json world = Json{{"name", data.name}, {"description", data.description}};
  world["player"] = PlayerJson(data);
  world["configuration"] = ConfigurationJson(data, true);
  world["service"] = ServiceJson(data);
  world["definitions"] = RecordsJson(data.definitions);
  world["queries"] = data.queries;
  world["odds"] = OddsJson(data);
  world["recipes"] = RecordsJson(data.recipes);
  WriteCollections(data.collections, world);
  world["loginMessages"] = LoginMessagesJson(data);
  world["messages"] = MessagesJson(data);
  world["lootData"] = data.lootData;
  world["state"] = StateJson(data);
  return world;
}

}  // namespace Kest::Host
