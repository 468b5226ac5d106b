// What has happened in a world.
#include <string>

#include "host/world/data/platform_constants.h"
#include "host/world/file/world_sections.h"

namespace Kest::Host {
namespace {

constexpr int64_t kMostDrawn = 1'000'000'000;

std::optional<PlayerIds> ReadSignedIn(FieldReader& state) {
  const Json* value = state.Find("signedIn");
  if (value == nullptr || value->is_null()) return std::nullopt;
  FieldReader fields(*value, state);
  PlayerIds ids;
  ids.summonerId = fields.UnsignedOr("summonerId", 1);
  ids.accountId = fields.UnsignedOr("accountId", 1);
  fields.Finish();
  return ids;
}

std::optional<std::string> ReadTextOrNull(FieldReader& state, std::string_view name) {
  const Json* value = state.Find(name);
  if (value == nullptr || value->is_null()) return std::nullopt;
  return state.StringOr(name, "");
}

void ReadRandom(FieldReader& state, PlatformState& read) {
  const Json* value = state.Find("random");
  if (value == nullptr) return;
  FieldReader fields(*value, state);
  RandomPlace place;
  place.seed = fields.UnsignedOr("seed", 1);
  place.drawn = static_cast<uint64_t>(fields.IntegerOr("drawn", 0, 0, kMostDrawn));
  fields.Finish();
  read.random = place;
}

}  // namespace

void ReadState(FieldReader& world, WorldData& data) {
  FieldReader state(world.ObjectOr("state"), world);
  PlatformState& read = data.state;
  read.decidesSignIn = state.Find("signedIn") != nullptr;
  read.signedIn = ReadSignedIn(state);
  read.phase = ReadTextOrNull(state, "phase");
  if (read.phase && !IsGameflowPhase(*read.phase)) {
    state.FailAt("phase", "\"" + *read.phase + "\" is no phase of a game");
  }
  read.newPlayerChestGranted = state.BoolOr("newPlayerChestGranted", false);
  read.withholdsCollections = state.BoolOr("withholdsCollections", false);
  if (state.Find("token") != nullptr) read.token = TokenOverride{ReadTextOrNull(state, "token")};
  ReadRandom(state, read);
  // Values of any kind, for those of "configuration" that no platform would have.
  for (const auto& [name, value] : state.ObjectOr("configuration").items()) {
    data.configuration[name] = value;
  }
  state.Finish();
}

}  // namespace Kest::Host
