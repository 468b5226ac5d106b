#include "host/world/world.h"

#include "host/url/request_target.h"
#include "host/world/artwork/artwork.h"
#include "host/world/artwork/tile.h"
#include "host/world/controls/controls.h"
#include "host/world/controls/platform.h"
#include "host/world/controls/world_view.h"
#include "host/world/data/platform_constants.h"
#include "host/world/file/shipped_worlds.h"
#include "host/world/file/world_file.h"
#include "host/world/file/world_writer.h"
#include "host/world/input/field_reader.h"
#include "host/world/platform/signed_token.h"

namespace Kest::Host {
namespace {

constexpr std::string_view kSignedInventoryPath = "/tav-inventory/v1/signedInventory";

// A token for each inventory type asked for that this platform has: {"TOURNAMENT_LOGO": "..."}.
WorldResponse SignedInventory(const Platform& platform, const RequestTarget& target) {
  const std::string argument = target.Parameter("inventoryTypes").value_or("");
  const auto types = Document::FromJson("inventoryTypes", argument);
  if (!types || !types.GetValue().root().is_array()) {
    return WorldFailure(400, "\"inventoryTypes\" must be a list of inventory types as JSON");
  }
  if (!platform.session.ids()) return WorldFailure(404, "no player is signed in");
  Json tokens = Json::object();
  for (const Json& type : types.GetValue().root()) {
    const auto* name = type.get_ptr<const std::string*>();
    if (name == nullptr) return WorldFailure(400, "an inventory type is a string");
    if (*name != kTournamentLogoInventory || !tokens.empty()) continue;
    if (!platform.data.state.token) {
      tokens.push_back(
          {*name, TournamentLogoToken(platform.collections, platform.session.ids()->summonerId)});
    } else if (platform.data.state.token->token) {
      tokens.push_back({*name, *platform.data.state.token->token});
    }
  }
  return WorldJson(WriteJson(tokens));
}

// A holder of definitions asks for them again only when their version differs.
void CountVersionsOn(const WorldData& present, WorldData* next) {
  const Json before = WorldFileJson(present);
  const Json after = WorldFileJson(*next);
  const auto count = [&](const char* section, int64_t now, int64_t* version) {
    if (before[section] != after[section] && *version == now) ++*version;
  };
  count("definitions", present.versions.lootItems, &next->versions.lootItems);
  count("recipes", present.versions.recipes, &next->versions.recipes);
  count("queries", present.versions.queries, &next->versions.queries);
}

constexpr int kMissing = 404;

// What the game-data plugin publishes.
Json GameData(const WorldData& data) {
  return Json{{"loot", data.lootData},
              {"icons", ProfileIconsJson(data.collections)},
              {"emotes", SummonerEmotesJson(data.collections)}};
}

WorldResponse Value(const Platform& platform, const RequestTarget& target) {
  if (target.path == kSignedInventoryPath) return SignedInventory(platform, target);
  if (const std::string* text = platform.board.Find(target.path)) return WorldJson(*text);
  return WorldFailure(404, "there is no resource " + std::string(target.path));
}

WorldResponse Read(Platform& platform, const RequestTarget& target) {
  const std::string_view path = target.path;
  const CallFault fault = platform.faults.Next(FaultTarget::kSibling, path).value_or(CallFault{});
  WorldResponse response;
  if (fault.action == FaultAction::kFail) {
    response = WorldFailure(fault.status, fault.error);
  } else if (fault.action == FaultAction::kDelete) {
    response = WorldFailure(404, "there is no resource " + std::string(path));
  } else if (fault.action == FaultAction::kGarble) {
    response = WorldJson(WriteJson(fault.payload));
  } else {
    response = Value(platform, target);
  }
  response.delayMilliseconds = static_cast<int>(fault.delay.value_or(0));
  return response;
}

}  // namespace

std::optional<WorldEvent> World::Passed(WorldEvent event) {
  if (event.channel != WorldEvent::Channel::kResource) return event;
  const std::string path = event.name.substr(kResourceEventPrefix.size());
  const auto fault = platform_->faults.Next(FaultTarget::kSibling, path);
  keptBack_.erase(path);
  if (!fault) return event;
  if (fault->action == FaultAction::kFail) {
    keptBack_[path] = fault->status;
    return std::nullopt;
  }
  if (fault->action == FaultAction::kDelete) keptBack_[path] = kMissing;
  if (fault->action == FaultAction::kDelete) event = ResourceBoard::Event(path, "Delete", "");
  if (fault->action == FaultAction::kGarble) {
    event = ResourceBoard::Event(path, "Update", WriteJson(fault->payload));
  }
  event.delayMilliseconds = static_cast<int>(fault->delay.value_or(0));
  return event;
}

World::World() = default;
World::~World() = default;

Maybe<std::unique_ptr<World>> World::Load(std::string_view text, std::string_view fileName,
                                          uint64_t seed) {
  return Load({std::string(fileName), std::string(text)}, {.findBase = {}, .seed = seed});
}

Maybe<std::unique_ptr<World>> World::Load(const WorldText& file, const WorldReading& reading) {
  auto data = ReadWorldFile(file, reading);
  if (!data) return data.GetFailure();
  std::unique_ptr<World> world(new World);
  world->platform_ = std::make_unique<Platform>(std::move(data.GetValue()), reading.seed);
  return world;
}

std::string_view World::SampleText() {
  return ShippedWorld("sample");
}

WorldResponse World::Request(std::string_view method, std::string_view url, std::string_view,
                             std::string_view body) {
  const RequestTarget target = RequestTarget::Split(url);
  if (method == "GET") return Read(*platform_, target);
  if (method == "POST") {
    if (auto response = platform_->proxy.Post(target.path, body)) return std::move(*response);
  }
  return WorldFailure(404,
                      "there is no " + std::string(method) + " of " + std::string(target.path));
}

std::optional<WorldEvent> World::PresentValue(std::string_view path) {
  const std::string* text = platform_->board.Find(path);
  if (text == nullptr) return std::nullopt;
  return Passed(ResourceBoard::Event(path, "Create", *text));
}

int World::FollowedStatus(std::string_view path) const {
  const auto kept = keptBack_.find(path);
  if (kept != keptBack_.end()) return kept->second;
  return platform_->board.Find(path) != nullptr ? 200 : kMissing;
}

WorldResponse World::SiblingPage(std::string_view path) const {
  if (const std::string* text = platform_->board.Find(path)) return WorldJson(*text);
  if (const auto artwork = FindArtwork(platform_->data, path)) {
    return {200, "image/svg+xml", DrawTile(*artwork), ""};
  }
  return WorldFailure(404, "Nothing is served at " + std::string(path));
}

WorldResponse World::Control(std::string_view method, std::string_view path,
                             std::string_view body) {
  return CallControl(*platform_, method, path, body);
}

void World::SetClock(std::function<int64_t()> now) {
  platform_->now = std::move(now);
}

void World::SignInAtStart(bool byDefault) {
  platform_->session.SignInAtStart(byDefault);
}

void World::BeginAgain() {
  platform_->session.BeginAgain();
  platform_->outbox.clear();
}

const std::vector<ScenarioStep>& World::Steps() const {
  return platform_->data.steps;
}

const Inventory& World::Held() const {
  return platform_->inventory;
}

std::string World::File() const {
  return WriteJson(PresentWorldJson(*platform_));
}

Maybe<World::Change> World::Adopt(const WorldText& file, const WorldReading& reading) {
  auto data = ReadWorldFile(file, reading);
  if (!data) return data.GetFailure();
  WorldData next = std::move(data.GetValue());
  CountVersionsOn(platform_->data, &next);
  const Json before = GameData(platform_->data);
  if (next.state.random) platform_->loot.SetRandomPlace(*next.state.random);
  platform_->session.Adopt(std::move(next));
  return before == GameData(platform_->data) ? Change::kEvents : Change::kGameData;
}

std::vector<WorldEvent> World::TakeEvents() {
  std::vector<WorldEvent> passed;
  for (WorldEvent& event : std::exchange(platform_->outbox, {})) {
    if (auto changed = Passed(std::move(event))) passed.push_back(std::move(*changed));
  }
  return passed;
}

std::vector<ReleasedResponse> World::TakeReleased() {
  return platform_->proxy.TakeReleased();
}

std::optional<CallFault> World::PublishedFault(std::string_view path) {
  return platform_->faults.Next(FaultTarget::kPublished, path);
}

void World::FollowFaults(FaultRules::Listener listener) {
  platform_->faults.SetListener(std::move(listener));
}

std::string World::KeptFaults() const {
  return platform_->faults.keeps() ? WriteJson(platform_->faults.ToJson()) : std::string();
}

}  // namespace Kest::Host
