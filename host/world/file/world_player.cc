// The player's side of a world file: ids, inventory, service, configuration, messages, game data.
#include <algorithm>
#include <string>

#include "host/json/json_text.h"
#include "host/world/data/platform_constants.h"
#include "host/world/file/world_sections.h"

namespace Kest::Host {
namespace {

constexpr int64_t kMaxLatency = 60'000;
constexpr std::string_view kGoalFlags = kConfigurationNumbers[0];

void ReadItem(FieldReader& fields, WorldData& data) {
  const LootKey key{fields.String("lootName"), fields.StringOr("refId", "")};
  const int64_t count = fields.IntegerOr("count", 1, 1, kMax32);
  const LootDefinition* definition = data.FindDefinition(key.lootName);
  const int64_t expiryTime = fields.IntegerOr(
      "expiryTime", definition == nullptr ? -1 : definition->expiryTime, -1, kMax64);
  const std::string fault = LootKeyFault(data, key);
  if (!fault.empty()) fields.Fail(fault);
  if (data.inventory.Count(key) != 0) {
    fields.Fail("duplicate item " + JsonString(key.LootId()));
  } else if (fields.ok()) {
    data.inventory.Add(key, count, expiryTime);
  }
}

// A text that must be one of `words`; the first is the default.
void ReadWord(FieldReader& fields, std::string_view name,
              std::initializer_list<std::string_view> words) {
  const std::string word = fields.StringOr(name, *words.begin());
  if (std::find(words.begin(), words.end(), word) == words.end()) {
    std::string text = JsonString(word) + " is none of";
    for (const std::string_view known : words) text.append(" ").append(JsonString(known));
    fields.FailAt(name, text);
  }
}

// A list of game-data records as they are published: texts by name, then the other members.
Json ReadRecords(FieldReader& file, std::string_view list,
                 const std::vector<std::string_view>& texts, bool isItem) {
  Json records = Json::array();
  file.ForEach(list, [&](FieldReader& fields) {
    fields.String("id");
    for (const std::string_view text : texts) fields.StringOr(text, "");
    if (isItem) {
      fields.IntegerOr("mappedStoreId", -1, kMin32, kMax32);
      fields.IntegerOr("lifetimeMax", 0, kMin32, kMax32);
      fields.BoolOr("autoRedeem", false);
      ReadWord(fields, "rarity", {"Default", "Epic", "Legendary", "Mythic", "Ultimate"});
      ReadWord(fields, "type", {"Material", "Chest", "Currency", "Skin", "Skin_Rental"});
    }
    records.push_back(fields.Values());
  });
  return records;
}

}  // namespace

void ReadPlayer(FieldReader& world, WorldData& data) {
  FieldReader fields(world.ObjectOr("player"), world);
  data.player.summonerId = fields.UnsignedOr("summonerId", 1);
  data.player.accountId = fields.UnsignedOr("accountId", 1);
  data.player.summonerLevel = fields.IntegerOr("summonerLevel", 1, 0, kMax32);
  data.player.displayName = fields.StringOr("displayName", "Player");
  fields.ForEach("inventory", [&](FieldReader& item) { ReadItem(item, data); });
  fields.Finish();
}

void ReadService(FieldReader& world, WorldData& data) {
  FieldReader service(world.ObjectOr("service"), world);
  data.latency = service.IntegerOr("latency", 0, 0, kMaxLatency);
  const Json& latencies = service.ObjectOr("latencies");
  FieldReader methods(latencies, service);
  for (const std::string_view method : kServiceMethods) {
    data.latencies[std::string(method)] = methods.IntegerOr(method, data.latency, 0, kMaxLatency);
  }
  methods.Finish();
  data.newPlayerChest = service.StringOr("newPlayerChest", "");
  if (!data.newPlayerChest.empty() && data.FindDefinition(data.newPlayerChest) == nullptr) {
    service.FailAt("newPlayerChest", "unknown loot name " + JsonString(data.newPlayerChest));
  }
  FieldReader versions(service.ObjectOr("versions"), service);
  data.versions.lootItems = versions.IntegerOr("lootItems", 1, 1, kMax64);
  data.versions.recipes = versions.IntegerOr("recipes", 1, 1, kMax64);
  data.versions.queries = versions.IntegerOr("queries", 1, 1, kMax64);
  versions.Finish();
  FieldReader client(service.ObjectOr("clientConfiguration"), service);
  for (const char* list : {"lootItemsUsingBreakoutRecipeMenu", "lootMaterialsToAlwaysRender",
                           "currenciesUsingCapWallets"}) {
    client.StringsOr(list);
  }
  data.clientConfiguration = client.Values();
  client.Finish();
  service.Finish();
}

void ReadConfiguration(FieldReader& world, WorldData& data) {
  const Json& configuration = world.ObjectOr("configuration");
  FieldReader fields(configuration, world);
  for (const std::string_view name : kConfigurationSwitches) fields.BoolOr(name, false);
  for (const std::string_view name : kConfigurationNumbers) {
    fields.IntegerOr(name, 0, 0, name == kGoalFlags ? 255 : kMax32);
  }
  if (!fields.Finish()) return;
  for (const auto& [name, value] : configuration.items()) data.configuration[name] = value;
}

LoginMessage ReadLoginMessage(FieldReader& fields) {
  LoginMessage message;
  message.msgId = fields.StringOr("msgId", "");
  message.type = fields.StringOr("type", kMasteryGrantType);
  message.params = fields.StringsOr("params");
  if (const Json* body = fields.Find("body")) {
    if (!message.params.empty()) {
      fields.FailPart(*body, "\"body\" and \"params\" exclude each other");
    }
    message.params = {WriteJson(*body)};
  }
  return message;
}

void ReadMessages(FieldReader& world, WorldData& data) {
  world.ForEach("loginMessages", [&](FieldReader& fields) {
    data.loginMessages.push_back(ReadLoginMessage(fields));
  });
  world.ForEach("messages", [&](FieldReader& fields) {
    const std::string name = fields.String("name");
    PreparedMessage message;
    message.clientId = fields.StringOr("clientId", "");
    message.subtopic = fields.StringOr("subtopic", kDialogMessageSubtopic);
    message.typeName = fields.StringOr("typeName", kMasteryGrantType);
    if (const Json* body = fields.Find("body")) message.body = *body;
    if (!data.messages.emplace(name, std::move(message)).second) {
      fields.FailAt("name", "duplicate message " + JsonString(name));
    }
  });
}

void ReadLootData(FieldReader& world, WorldData& data) {
  FieldReader file(world.ObjectOr("lootData"), world);
  data.lootData = {
      {"LootItems", ReadRecords(file, "LootItems",
                                {"name", "description", "image", "startDate", "endDate"}, true)},
      {"LootRecipes",
       ReadRecords(file, "LootRecipes",
                   {"description", "contextMenuText", "requirementText", "imagePath"}, false)},
      {"LootTables",
       ReadRecords(file, "LootTables", {"description", "descriptionLong", "image"}, false)}};
  file.Finish();
}

}  // namespace Kest::Host
