#include "host/world/platform/platform_session.h"

#include <algorithm>

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

constexpr std::string_view kPhases[] = {"None",
                                        "Lobby",
                                        "Matchmaking",
                                        "CheckedIntoTournament",
                                        "ReadyCheck",
                                        "ChampSelect",
                                        "GameStart",
                                        "FailedToLaunch",
                                        "InProgress",
                                        "Reconnect",
                                        "WaitingForStats",
                                        "PreEndOfGame",
                                        "EndOfGame",
                                        "TerminatedInError"};

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

PlatformSession::PlatformSession(const WorldData& data, const PlatformCollections& collections,
                                 ResourceBoard& board)
    : data_(data),
      collections_(collections),
      board_(board),
      summonerLevel_(data.player.summonerLevel),
      loginMessages_(data.loginMessages) {
  board_.Set(kLootDataPath, data_.lootData);
  board_.Set(kIconsPath, ProfileIconsJson(collections_));
  board_.Set(kEmotesPath, SummonerEmotesJson(collections_));
  for (const auto& [name, value] : data_.configuration) SetConfiguration(name, value);
}

void PlatformSession::SignIn(Ids ids) {
  if (ids_ == ids) return;
  if (ids_) Leave();
  PublishSession("IN_PROGRESS");
  ids_ = ids;
  PublishSummoner();
  PublishLoginDataPacket();
  PublishCollections();
  PublishSession("SUCCEEDED");
}

void PlatformSession::SignOut() {
  if (!ids_) return;
  Leave();
  board_.Remove(kSessionPath);
}

void PlatformSession::PublishCollections() {
  if (!ids_) return;
  for (const auto& [path, value] : CollectionResources(collections_, ids_->summonerId)) {
    board_.Set(path, value);
  }
}

void PlatformSession::SetSummonerLevel(int64_t level) {
  summonerLevel_ = level;
  if (ids_) PublishSummoner();
}

void PlatformSession::SetLoginMessages(std::vector<LoginMessage> messages) {
  loginMessages_ = std::move(messages);
  if (ids_) PublishLoginDataPacket();
}

void PlatformSession::Acknowledge(const std::string& msgId) {
  std::erase_if(loginMessages_,
                [&](const LoginMessage& message) { return message.msgId == msgId; });
}

void PlatformSession::SetPhase(const std::optional<std::string>& phase) {
  phase_ = phase;
  if (phase_) {
    board_.Set(kGameflowPath, Json{{"phase", *phase_}});
  } else {
    board_.Remove(kGameflowPath);
  }
}

void PlatformSession::SetConfiguration(const std::string& name, Json value) {
  board_.Set(ConfigurationPath(name), value);
  configuration_[name] = std::move(value);
}

bool PlatformSession::RemoveConfiguration(const std::string& name) {
  board_.Remove(ConfigurationPath(name));
  return configuration_.erase(name) != 0;
}

void PlatformSession::PublishSession(std::string_view state) {
  const Ids ids = ids_.value_or(Ids{});
  board_.Set(kSessionPath,
             Json{{"state", state}, {"summonerId", ids.summonerId}, {"accountId", ids.accountId}});
}

void PlatformSession::PublishSummoner() {
  board_.Set(kSummonerPath, Json{{"summonerId", ids_->summonerId},
                                 {"displayName", data_.player.displayName},
                                 {"summonerLevel", summonerLevel_}});
}

void PlatformSession::PublishLoginDataPacket() {
  Json messages = Json::array();
  for (const LoginMessage& message : loginMessages_) {
    messages.push_back(LoginMessageJson(message, ids_->accountId));
  }
  const Json level = Json{{"summonerLevel", summonerLevel_}};
  board_.Set(kPacketPath, Json{{"allSummonerData", Json{{"summonerLevelAndPoints", level}}},
                               {"simpleMessages", std::move(messages)}});
}

void PlatformSession::Leave() {
  PublishSession("LOGGING_OUT");
  for (const auto& [path, value] : CollectionResources(collections_, ids_->summonerId)) {
    board_.Remove(path);
  }
  board_.Remove(kPacketPath);
  board_.Remove(kSummonerPath);
  ids_.reset();
}

bool IsGameflowPhase(std::string_view word) {
  return std::find(std::begin(kPhases), std::end(kPhases), word) != std::end(kPhases);
}

}  // namespace Kest::Host
