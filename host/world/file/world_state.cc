// What has happened in a world, and the steps that make it happen.
#include <algorithm>
#include <array>
#include <string>

#include "host/world/data/platform_constants.h"
#include "host/world/file/world_sections.h"

namespace Kest::Host {
namespace {

constexpr std::array<std::string_view, 4> kStepMethods = {"POST", "PUT", "DELETE", "GET"};
constexpr int64_t kLongestWait = 3'600'000;
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

ScenarioStep ReadStep(FieldReader& fields) {
  ScenarioStep step;
  const std::string request = fields.String("request");
  const size_t space = std::min(request.find(' '), request.size());
  step.method = request.substr(0, space);
  step.path = request.substr(std::min(space + 1, request.size()));
  const bool isKnown =
      std::find(kStepMethods.begin(), kStepMethods.end(), step.method) != kStepMethods.end();
  if (!isKnown || !step.path.starts_with("/_host/")) {
    fields.FailAt("request",
                  "a step is a method and the path of a control, such as "
                  "\"PUT /_host/gameflow\"; found \"" +
                      request + "\"");
  }
  step.afterMilliseconds = fields.IntegerOr("afterMilliseconds", 0, 0, kLongestWait);
  if (const Json* body = fields.Find("body")) step.body = WriteJson(*body);
  step.place = fields.Place();
  return step;
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

void ReadSteps(FieldReader& world, WorldData& data) {
  world.ForEach("steps", [&](FieldReader& fields) { data.steps.push_back(ReadStep(fields)); });
}

}  // namespace Kest::Host
