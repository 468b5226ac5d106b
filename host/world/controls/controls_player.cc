#include <charconv>

#include "host/world/controls/control_call.h"
#include "host/world/controls/world_view.h"

namespace Kest::Host {
namespace {

// A number written with digits only, or -1.
int64_t ReadId(const std::string& text) {
  int64_t id = -1;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, id);
  return error == std::errc() && rest == end ? id : -1;
}

}  // namespace

ControlResult ShowWorld(Platform& platform, const ControlCall&) {
  return PresentWorldJson(platform);
}

ControlResult ShowState(Platform& platform, const ControlCall&) {
  return WorldStateJson(platform);
}

ControlResult WithholdCollections(Platform& platform, const ControlCall& call) {
  FieldReader fields(call.body);
  if (fields.Find("withheld") == nullptr) fields.Fail("member \"withheld\" is missing");
  const bool withheld = fields.BoolOr("withheld", false);
  if (!fields.Finish()) return fields.failure();
  platform.session.WithholdCollections(withheld);
  return fields.Values();
}

ControlResult SignIn(Platform& platform, const ControlCall& call) {
  FieldReader fields(call.body);
  PlatformSession::Ids ids;
  ids.summonerId = fields.UnsignedOr("summonerId", platform.data.player.summonerId);
  ids.accountId = fields.UnsignedOr("accountId", platform.data.player.accountId);
  if (!fields.Finish()) return fields.failure();
  platform.session.SignIn(ids);
  return fields.Values();
}

ControlResult SignOut(Platform& platform, const ControlCall&) {
  const bool wasSignedIn = platform.session.ids().has_value();
  platform.session.SignOut();
  return Json({{"wasSignedIn", wasSignedIn}});
}

ControlResult SetSummoner(Platform& platform, const ControlCall& call) {
  FieldReader fields(call.body);
  const int64_t level = fields.Integer("summonerLevel", 0, kMax32);
  if (!fields.Finish()) return fields.failure();
  platform.session.SetSummonerLevel(level);
  return fields.Values();
}

ControlResult SetGameflow(Platform& platform, const ControlCall& call) {
  FieldReader fields(call.body);
  std::optional<std::string> phase;
  const Json* value = fields.Find("phase");
  if (value != nullptr && !value->is_null()) phase = fields.StringOr("phase", "");
  if (phase && !IsGameflowPhase(*phase)) {
    fields.FailPart(*value, "\"" + *phase + "\" is no phase of a game");
  }
  if (!fields.Finish()) return fields.failure();
  platform.session.SetPhase(phase);
  return Json({{"phase", phase ? Json(*phase) : Json()}});
}

ControlResult SetOwnership(Platform& platform, const ControlCall& call) {
  const std::string& name = call.path.at("collection");
  const std::string& idText = call.path.at("id");
  const auto collection = CollectionByName(name);
  if (!collection) return Failure{"there is no collection " + name, 404};
  const int64_t id = ReadId(idText);
  if (platform.collections.Find(*collection, id) == nullptr) {
    return Failure{idText + " is not among the " + name, 404};
  }
  FieldReader fields(call.body);
  Ownership& present = platform.collections[*collection][id].ownership;
  Ownership wanted = present;
  wanted.owned = fields.BoolOr("owned", wanted.owned);
  if (CanBeRented(*collection)) {
    wanted.rented = fields.BoolOr("rented", wanted.rented);
    wanted.freeToPlayReward = fields.BoolOr("freeToPlayReward", wanted.freeToPlayReward);
  }
  if (!fields.Finish()) return fields.failure();
  present = wanted;
  platform.session.PublishCollections();
  return Json({{"owned", wanted.owned},
               {"rented", wanted.rented},
               {"freeToPlayReward", wanted.freeToPlayReward}});
}

ControlResult ChangeInventory(Platform& platform, const ControlCall& call) {
  FieldReader fields(call.body);
  const LootKey key{fields.String("lootName"), fields.StringOr("refId", "")};
  const int64_t delta = fields.Integer("delta", -kMax32, kMax32);
  fields.Finish();
  const std::string fault = LootKeyFault(platform.data, key);
  if (!fault.empty()) fields.Fail(fault);
  const int64_t count = platform.inventory.Count(key) + delta;
  if (count < 0 || count > kMax32) {
    fields.FailAt("delta", "the count would become " + std::to_string(count));
  }
  if (!fields.ok()) return fields.failure();
  platform.inventory.Add(key, delta, platform.data.FindDefinition(key.lootName)->expiryTime);
  return Json(Json{{"lootName", key.lootName}, {"refId", key.refId}, {"count", count}});
}

}  // namespace Kest::Host
