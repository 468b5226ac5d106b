// The player's side of a world file: ids, inventory, service, configuration, messages, game data.
#include <algorithm>
#include <string>

#include "host/world/data/platform_constants.h"
#include "host/world/file/world_sections.h"

namespace Kest::Host {
namespace {

constexpr int64_t kMin32 = FieldReader::kMin32;
constexpr int64_t kMax32 = FieldReader::kMax32;
constexpr int64_t kMaxLatency = 60'000;

// The member, or an empty object, so that its own members take their defaults.
const JsonValue& ObjectOr(FieldReader& fields, std::string_view name) {
  static const JsonValue kEmpty{JsonValue::Object()};
  const JsonValue* value = fields.Find(name);
  return value == nullptr ? kEmpty : *value;
}

void ReadItem(const JsonValue& value, IssueReport& report, WorldData& data) {
  FieldReader fields(value, report);
  const LootKey key{fields.Text("lootName"), fields.TextOr("refId", "")};
  const int64_t count = fields.WholeOr("count", 1, 1, kMax32);
  const LootDefinition* definition = data.FindDefinition(key.lootName);
  const int64_t expiryTime =
      fields.WholeOr("expiryTime", definition == nullptr ? -1 : definition->expiryTime, -1,
                     std::numeric_limits<int64_t>::max());
  fields.Finish();
  const std::string fault = LootKeyFault(data, key);
  if (!fault.empty()) report.Add(value.position(), fault);
  if (data.inventory.Count(key) != 0) {
    report.Add(value.position(), QuoteJson(key.LootId()) + " stands twice in the inventory");
  } else if (!report.failed()) {
    data.inventory.Add(key, count, expiryTime);
  }
}

JsonValue ToJson(const std::vector<std::string>& texts) {
  return JsonValue::Array(texts.begin(), texts.end());
}

// A text that must be one of `words`; the first is the default.
std::string WordOr(FieldReader& fields, IssueReport& report, std::string_view name,
                   std::initializer_list<std::string_view> words) {
  std::string word = fields.TextOr(name, *words.begin());
  if (std::find(words.begin(), words.end(), word) == words.end()) {
    std::string text = QuoteJson(word) + " is none of";
    for (const std::string_view known : words) text.append(" ").append(QuoteJson(known));
    report.Add(fields.Place(name), text);
  }
  return word;
}

// A list of game-data records: texts by name, then the other members.
JsonValue ReadRecords(FieldReader& file, IssueReport& report, std::string_view list,
                      const std::vector<std::string_view>& texts, bool isItem) {
  JsonValue::Array records;
  for (const JsonValue& value : file.ListOr(list)) {
    FieldReader fields(value, report);
    JsonValue::Object record{{"id", fields.Text("id")}};
    for (const std::string_view text : texts) {
      record.push_back({std::string(text), fields.TextOr(text, "")});
    }
    if (isItem) {
      record.push_back({"mappedStoreId", fields.WholeOr("mappedStoreId", -1, kMin32, kMax32)});
      record.push_back({"lifetimeMax", fields.WholeOr("lifetimeMax", 0, kMin32, kMax32)});
      record.push_back({"autoRedeem", fields.FlagOr("autoRedeem", false)});
      record.push_back({"rarity", WordOr(fields, report, "rarity",
                                         {"Default", "Epic", "Legendary", "Mythic", "Ultimate"})});
      record.push_back({"type", WordOr(fields, report, "type",
                                       {"Material", "Chest", "Currency", "Skin", "Skin_Rental"})});
    }
    fields.Finish();
    records.push_back(std::move(record));
  }
  return records;
}

}  // namespace

void ReadPlayer(FieldReader& world, IssueReport& report, WorldData& data) {
  FieldReader fields(ObjectOr(world, "player"), report);
  data.player.summonerId = fields.NaturalOr("summonerId", 1);
  data.player.accountId = fields.NaturalOr("accountId", 1);
  data.player.summonerLevel = fields.WholeOr("summonerLevel", 1, 1, kMax32);
  data.player.displayName = fields.TextOr("displayName", "Player");
  for (const JsonValue& item : fields.ListOr("inventory")) {
    ReadItem(item, report, data);
    if (report.failed()) return;
  }
  fields.Finish();
}

void ReadService(FieldReader& world, IssueReport& report, WorldData& data) {
  FieldReader service(ObjectOr(world, "service"), report);
  data.latency = service.WholeOr("latency", 0, 0, kMaxLatency);
  const JsonValue& latencies = ObjectOr(service, "latencies");
  FieldReader methods(latencies, report);
  for (const std::string_view method : kServiceMethods) {
    data.latencies[std::string(method)] = methods.WholeOr(method, data.latency, 0, kMaxLatency);
  }
  methods.Finish();
  data.newPlayerChest = service.TextOr("newPlayerChest", "");
  if (!data.newPlayerChest.empty() && data.FindDefinition(data.newPlayerChest) == nullptr) {
    report.Add(service.Place("newPlayerChest"),
               "unknown loot name " + QuoteJson(data.newPlayerChest));
  }
  FieldReader versions(ObjectOr(service, "versions"), report);
  constexpr int64_t kMax64 = std::numeric_limits<int64_t>::max();
  data.versions.lootItems = versions.WholeOr("lootItems", 1, 1, kMax64);
  data.versions.recipes = versions.WholeOr("recipes", 1, 1, kMax64);
  data.versions.queries = versions.WholeOr("queries", 1, 1, kMax64);
  versions.Finish();
  FieldReader client(ObjectOr(service, "clientConfiguration"), report);
  JsonValue::Object configuration;
  for (const char* list : {"lootItemsUsingBreakoutRecipeMenu", "lootMaterialsToAlwaysRender",
                           "currenciesUsingCapWallets"}) {
    configuration.push_back({list, ToJson(client.TextsOr(list))});
  }
  data.clientConfiguration = std::move(configuration);
  client.Finish();
  service.Finish();
}

void ReadConfiguration(FieldReader& world, IssueReport& report, WorldData& data) {
  const JsonValue& configuration = ObjectOr(world, "configuration");
  FieldReader fields(configuration, report);
  for (const char* flag : {"Enabled", "PxhEnabled", "NewPlayerChestEnabled"}) {
    fields.FlagOr(flag, false);
  }
  fields.WholeOr("InitializationGoalFlags", 0, 0, 255);
  fields.WholeOr("MinSummonerLevel", 0, 0, kMax32);
  fields.Finish();
  if (report.failed()) return;
  for (const JsonValue::Member& member : *configuration.AsObject()) {
    data.configuration.emplace(member.name, member.value);
  }
}

LoginMessage ReadLoginMessage(const JsonValue& value, IssueReport& report) {
  FieldReader fields(value, report);
  LoginMessage message;
  message.msgId = fields.TextOr("msgId", "");
  message.type = fields.TextOr("type", kMasteryGrantType);
  message.params = fields.TextsOr("params");
  if (const JsonValue* body = fields.Find("body")) {
    if (!message.params.empty()) {
      report.Add(body->position(), "\"body\" and \"params\" exclude each other");
    }
    message.params = {WriteJson(*body)};
  }
  fields.Finish();
  return message;
}

void ReadMessages(FieldReader& world, IssueReport& report, WorldData& data) {
  for (const JsonValue& value : world.ListOr("loginMessages")) {
    data.loginMessages.push_back(ReadLoginMessage(value, report));
  }
  for (const JsonValue& value : world.ListOr("messages")) {
    FieldReader fields(value, report);
    const std::string name = fields.Text("name");
    PreparedMessage message;
    message.clientId = fields.TextOr("clientId", "");
    message.subtopic = fields.TextOr("subtopic", kDialogMessageSubtopic);
    message.typeName = fields.TextOr("typeName", kMasteryGrantType);
    if (const JsonValue* body = fields.Find("body")) message.body = *body;
    fields.Finish();
    if (!data.messages.emplace(name, std::move(message)).second) {
      report.Add(fields.Place("name"), "message " + QuoteJson(name) + " stands twice");
    }
  }
}

void ReadLootData(FieldReader& world, IssueReport& report, WorldData& data) {
  FieldReader file(ObjectOr(world, "lootData"), report);
  data.lootData = JsonValue::Object{
      {"LootItems", ReadRecords(file, report, "LootItems",
                                {"name", "description", "image", "startDate", "endDate"}, true)},
      {"LootRecipes",
       ReadRecords(file, report, "LootRecipes",
                   {"description", "contextMenuText", "requirementText", "imagePath"}, false)},
      {"LootTables", ReadRecords(file, report, "LootTables",
                                 {"description", "descriptionLong", "image"}, false)}};
  file.Finish();
}

}  // namespace Kest::Host
