#include <charconv>

#include "host/world/controls/control_call.h"
#include "host/world/controls/world_view.h"

namespace Kest::Host {
namespace {

constexpr int64_t kMax32 = FieldReader::kMax32;

// A number written with digits only, or -1.
int64_t ReadId(const std::string& text) {
  int64_t id = -1;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, id);
  return error == std::errc() && rest == end ? id : -1;
}

}  // namespace

ControlResult ShowWorld(Platform& platform, const ControlCall&) {
  return WorldStateJson(platform);
}

ControlResult SignIn(Platform& platform, const ControlCall& call) {
  IssueReport report;
  FieldReader fields(call.body, report);
  PlatformSession::Ids ids;
  ids.summonerId = fields.NaturalOr("summonerId", platform.data.player.summonerId);
  ids.accountId = fields.NaturalOr("accountId", platform.data.player.accountId);
  fields.Finish();
  if (report.failed()) return BadBody(report);
  platform.session.SignIn(ids);
  return JsonValue(JsonValue::Object{{"summonerId", ids.summonerId}, {"accountId", ids.accountId}});
}

ControlResult SignOut(Platform& platform, const ControlCall&) {
  const bool wasSignedIn = platform.session.ids().has_value();
  platform.session.SignOut();
  return JsonValue(JsonValue::Object{{"wasSignedIn", wasSignedIn}});
}

ControlResult SetSummoner(Platform& platform, const ControlCall& call) {
  IssueReport report;
  FieldReader fields(call.body, report);
  const int64_t level = fields.Whole("summonerLevel", 0, kMax32);
  fields.Finish();
  if (report.failed()) return BadBody(report);
  platform.session.SetSummonerLevel(level);
  return JsonValue(JsonValue::Object{{"summonerLevel", level}});
}

ControlResult SetGameflow(Platform& platform, const ControlCall& call) {
  IssueReport report;
  FieldReader fields(call.body, report);
  std::optional<std::string> phase;
  const JsonValue* value = fields.Find("phase");
  if (value != nullptr && !value->IsNull()) phase = fields.TextOr("phase", "");
  if (phase && !IsGameflowPhase(*phase)) {
    report.Add(value->position(), "\"" + *phase + "\" is no phase of a game");
  }
  fields.Finish();
  if (report.failed()) return BadBody(report);
  platform.session.SetPhase(phase);
  return JsonValue(JsonValue::Object{{"phase", phase ? JsonValue(*phase) : JsonValue()}});
}

ControlResult SetOwnership(Platform& platform, const ControlCall& call) {
  const auto collection = CollectionByName(call.parts[1]);
  if (!collection) return Failure{"there is no collection " + call.parts[1], 404};
  const int64_t id = ReadId(call.parts[2]);
  if (platform.collections.Find(*collection, id) == nullptr) {
    return Failure{call.parts[2] + " is not among the " + call.parts[1], 404};
  }
  IssueReport report;
  FieldReader fields(call.body, report);
  Ownership& present = platform.collections[*collection][id].ownership;
  Ownership wanted = present;
  wanted.owned = fields.FlagOr("owned", wanted.owned);
  if (CanBeRented(*collection)) {
    wanted.rented = fields.FlagOr("rented", wanted.rented);
    wanted.freeToPlayReward = fields.FlagOr("freeToPlayReward", wanted.freeToPlayReward);
  }
  fields.Finish();
  if (report.failed()) return BadBody(report);
  present = wanted;
  platform.session.PublishCollections();
  return JsonValue(JsonValue::Object{{"owned", wanted.owned},
                                     {"rented", wanted.rented},
                                     {"freeToPlayReward", wanted.freeToPlayReward}});
}

ControlResult ChangeInventory(Platform& platform, const ControlCall& call) {
  IssueReport report;
  FieldReader fields(call.body, report);
  const LootKey key{fields.Text("lootName"), fields.TextOr("refId", "")};
  const int64_t delta = fields.Whole("delta", -kMax32, kMax32);
  fields.Finish();
  const std::string fault = LootKeyFault(platform.data, key);
  if (!fault.empty()) report.Add(call.body.position(), fault);
  const int64_t count = platform.inventory.Count(key) + delta;
  if (count < 0 || count > kMax32) {
    report.Add(fields.Place("delta"), "the count would become " + std::to_string(count));
  }
  if (report.failed()) return BadBody(report);
  platform.inventory.Add(key, delta, platform.data.FindDefinition(key.lootName)->expiryTime);
  return JsonValue(
      JsonValue::Object{{"lootName", key.lootName}, {"refId", key.refId}, {"count", count}});
}

}  // namespace Kest::Host
