#include "loot/calls/inbound_messages.h"

#include <cstdint>
#include <functional>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "binding/json/json_adapter.h"
#include "client/find_value.h"
#include "log/logger.h"
#include "loot/calls/grant_notices.h"

namespace Kest::Client::Loot {
namespace {

constexpr std::string_view kMasteryGrantType = "championMasteryLootGrant";
constexpr std::string_view kShownKeys[] = {"UNOWNED_CHAMPION", "GAME_LEAVER"};

size_t HashOf(const Api::LoginSimpleMessage& message) {
  const std::hash<std::string> hash;
  return hash(message.msgId) * 31 + (message.params.empty() ? 0 : hash(message.params.front()));
}

// False, with a log line, when the text is not JSON.
bool ReadBody(std::string_view text, BindingProperty* body) {
  ConversionContext context;
  *body = ReadJson(context, text);
  if (context.Ok()) return true;
  if (context.RanOutOfMemory()) throw std::bad_alloc();
  LogError("Malformed JSON message received: %s", std::string(text).c_str());
  return false;
}

// The champion for the log line; 0 when the message names none.
unsigned long long ChampionOf(const BindingProperty& message) {
  uint64_t champion = 0;
  const BindingProperty* value = FindValue(message, "championId");
  ConversionContext context;
  if (value != nullptr) Assign(context, "championId", *value, &champion);
  return context.Ok() ? champion : 0;
}

bool IsWellFormed(const BindingProperty& message) {
  return FindValue(message, "gameId") != nullptr &&
         (FindValue(message, "lootName") != nullptr || FindValue(message, "messageKey") != nullptr);
}

// A grant without a key is shown, and one whose key the player can make sense of.
bool IsShown(const BindingProperty& message) {
  const BindingProperty* key = FindValue(message, "messageKey");
  if (key == nullptr) return true;
  if (key->kind() != BindingKind::kString) return false;
  for (const std::string_view shown : kShownKeys) {
    if (key->AsString() == shown) return true;
  }
  return false;
}

}  // namespace

void InboundMessages::OnMasteryGrant(const PluginSvdsEvent& event) {
  if (event.typeName != kMasteryGrantType) return;
  BindingProperty parsed;
  const BindingProperty* message = &event.body;
  if (message->kind() == BindingKind::kString) {
    if (!ReadBody(message->AsString(), &parsed)) return;
    message = &parsed;
  }
  if (message->kind() != BindingKind::kStructure) return;
  LogAlways("Received 'championMasteryLootGrant' message for champion %llu.", ChampionOf(*message));
  if (!IsWellFormed(*message)) {
    LogError("Malformed champion mastery loot grant message update recieved.");
    return;
  }
  Api::LootGrantNotification grant;
  ConversionContext context;
  Assign(context, "<value>", *message, &grant);
  if (context.RanOutOfMemory()) throw std::bad_alloc();
  if (!context.Ok()) {
    LogError("Failed to convert 'championMasteryLootGrant' to a 'LootGrantNotification' resource");
    return;
  }
  grants_.Add(std::move(grant));
}

void InboundMessages::OnLoginDataPacket(const Api::LoginDataPacket& packet) {
  const std::vector<size_t> before = std::exchange(handled_, {});
  std::vector<size_t> handled;
  handled.reserve(packet.simpleMessages.size());
  try {
    for (const Api::LoginSimpleMessage& message : packet.simpleMessages) {
      const size_t place = handled.size();
      const size_t hash = HashOf(message);
      const bool isHandled = place < before.size() && before[place] == hash;
      if (!isHandled && message.type == kMasteryGrantType) OnLoginMessage(message);
      handled.push_back(hash);
    }
  } catch (...) {
    handled_.swap(handled);
    throw;
  }
}

void InboundMessages::OnLoginMessage(const Api::LoginSimpleMessage& message) {
  if (message.params.empty()) {
    LogError("Malformed champion mastery loot grant message update recieved.");
    return;
  }
  PluginSvdsEvent event;
  event.clientId = message.msgId;
  event.typeName = message.type;
  if (!ReadBody(message.params.front(), &event.body)) return;
  if (IsShown(event.body)) {
    OnMasteryGrant(event);
  } else if (!grants_.Acknowledge(message.accountId, message.msgId)) {
    LogWarning("Failed to dismiss leaver or unowned champ from login data packet with id:%s",
               message.msgId.c_str());
  }
}

}  // namespace Kest::Client::Loot
