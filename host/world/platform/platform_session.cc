#include "host/world/platform/platform_session.h"

#include <utility>

#include "host/world/data/platform_constants.h"

namespace Kest::Host {
namespace {

constexpr const char* kSessionPath = "/tav-login/v1/session";
constexpr const char* kPacketPath = "/tav-login/v1/login-data-packet";
constexpr const char* kSummonerPath = "/tav-summoner/v1/current-summoner";
constexpr const char* kGameflowPath = "/tav-gameflow/v1/session";
constexpr const char* kLootDataPath = "/tav-game-data/assets/v1/loot.json";
constexpr const char* kIconsPath = "/tav-game-data/assets/v1/profile-icons.json";
constexpr const char* kEmotesPath = "/tav-game-data/assets/v1/summoner-emotes.json";

std::string ConfigurationPath(const std::string& name) {
  return std::string(kConfigurationPath) + name;
}

Json LoginMessageJson(const LoginMessage& message, uint64_t accountId) {
  return Json{{"accountId", accountId},
              {"msgId", message.msgId},
              {"type", message.type},
              {"params", message.params}};
}

}  // namespace

PlatformSession::PlatformSession(WorldData& data, ResourceBoard& board)
    : data_(data), board_(board), atStart_(std::exchange(data.state.signedIn, std::nullopt)) {
  PublishLasting();
}

void PlatformSession::SignInAtStart(bool byDefault) {
  const Ids player{data_.player.summonerId, data_.player.accountId};
  if (state_.decidesSignIn ? atStart_.has_value() : byDefault) SignIn(atStart_.value_or(player));
}

void PlatformSession::BeginAgain() {
  atStart_ = state_.signedIn;
  state_.decidesSignIn = true;
  SignOut();
}

void PlatformSession::Adopt(WorldData next) {
  const std::optional<Ids> present = state_.signedIn;
  if (!next.state.decidesSignIn) next.state.signedIn = present;
  const std::optional<Ids> wanted = std::exchange(next.state.signedIn, present);
  if (present && !wanted) SignOut();
  for (const auto& [name, value] : data_.configuration) {
    if (!next.configuration.contains(name)) board_.Remove(ConfigurationPath(name));
  }
  const bool isIn = state_.signedIn.has_value();
  data_ = std::move(next);
  if (!isIn) state_.signedIn.reset();
  PublishLasting();
  if (isIn) {
    PublishSummoner();
    PublishLoginDataPacket();
    WithholdCollections(state_.withholdsCollections);
  }
  if (wanted) SignIn(*wanted);
}

// What exists without a player too.
void PlatformSession::PublishLasting() {
  board_.Set(kLootDataPath, data_.lootData);
  board_.Set(kIconsPath, ProfileIconsJson(data_.collections));
  board_.Set(kEmotesPath, SummonerEmotesJson(data_.collections));
  for (const auto& [name, value] : data_.configuration) board_.Set(ConfigurationPath(name), value);
  SetPhase(std::optional<std::string>(state_.phase));
}

void PlatformSession::SignIn(Ids ids) {
  if (state_.signedIn == ids) return;
  if (state_.signedIn) Leave();
  PublishSession("IN_PROGRESS");
  state_.signedIn = ids;
  PublishSummoner();
  PublishLoginDataPacket();
  PublishCollections();
  PublishSession("SUCCEEDED");
}

void PlatformSession::SignOut() {
  if (!state_.signedIn) return;
  Leave();
  board_.Remove(kSessionPath);
}

void PlatformSession::PublishCollections() {
  if (!state_.signedIn || state_.withholdsCollections) return;
  for (const auto& [path, value] :
       CollectionResources(data_.collections, state_.signedIn->summonerId)) {
    board_.Set(path, value);
  }
}

void PlatformSession::WithholdCollections(bool withheld) {
  state_.withholdsCollections = withheld;
  if (withheld && state_.signedIn) RemoveCollections();
  PublishCollections();
}

void PlatformSession::SetSummonerLevel(int64_t level) {
  data_.player.summonerLevel = level;
  if (state_.signedIn) PublishSummoner();
}

void PlatformSession::SetLoginMessages(std::vector<LoginMessage> messages) {
  data_.loginMessages = std::move(messages);
  if (state_.signedIn) PublishLoginDataPacket();
}

void PlatformSession::Acknowledge(const std::string& msgId) {
  std::erase_if(data_.loginMessages,
                [&](const LoginMessage& message) { return message.msgId == msgId; });
}

void PlatformSession::SetPhase(const std::optional<std::string>& phase) {
  state_.phase = phase;
  if (state_.phase) {
    board_.Set(kGameflowPath, Json{{"phase", *state_.phase}});
  } else {
    board_.Remove(kGameflowPath);
  }
}

void PlatformSession::SetConfiguration(const std::string& name, Json value) {
  board_.Set(ConfigurationPath(name), value);
  data_.configuration[name] = std::move(value);
}

bool PlatformSession::RemoveConfiguration(const std::string& name) {
  board_.Remove(ConfigurationPath(name));
  return data_.configuration.erase(name) != 0;
}

void PlatformSession::PublishSession(std::string_view state) {
  const Ids ids = state_.signedIn.value_or(Ids{});
  board_.Set(kSessionPath,
             Json{{"state", state}, {"summonerId", ids.summonerId}, {"accountId", ids.accountId}});
}

void PlatformSession::PublishSummoner() {
  board_.Set(kSummonerPath, Json{{"summonerId", state_.signedIn->summonerId},
                                 {"displayName", data_.player.displayName},
                                 {"summonerLevel", data_.player.summonerLevel}});
}

void PlatformSession::PublishLoginDataPacket() {
  Json messages = Json::array();
  for (const LoginMessage& message : data_.loginMessages) {
    messages.push_back(LoginMessageJson(message, state_.signedIn->accountId));
  }
  const Json level = Json{{"summonerLevel", data_.player.summonerLevel}};
  board_.Set(kPacketPath, Json{{"allSummonerData", Json{{"summonerLevelAndPoints", level}}},
                               {"simpleMessages", std::move(messages)}});
}

void PlatformSession::RemoveCollections() {
  for (const auto& [path, value] :
       CollectionResources(data_.collections, state_.signedIn->summonerId)) {
    board_.Remove(path);
  }
}

void PlatformSession::Leave() {
  PublishSession("LOGGING_OUT");
  RemoveCollections();
  board_.Remove(kPacketPath);
  board_.Remove(kSummonerPath);
  state_.signedIn.reset();
}

}  // namespace Kest::Host
