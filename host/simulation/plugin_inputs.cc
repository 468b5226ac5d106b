#include "host/simulation/plugin_inputs.h"

#include <charconv>
#include <utility>

#include "host/json/json.h"
#include "host/world/data/platform_constants.h"

namespace Kest::Host {
namespace {

constexpr uint32_t kChampions = 1;
constexpr uint32_t kSkins = 2;
constexpr uint32_t kWardSkins = 4;
constexpr uint32_t kSummonerIcons = 8;
constexpr uint32_t kTournamentLogos = 16;
constexpr uint32_t kEmotes = 32;

struct Source {
  std::string_view end;  // of the resource's path
  uint32_t bit;
};
constexpr Source kSources[] = {{"/ward-skins", kWardSkins},
                               {"/summoner-icons", kSummonerIcons},
                               {"/inventory/emotes", kEmotes}};
constexpr std::string_view kSessionPath = "/tav-login/v1/session";
constexpr std::string_view kSkinsEnd = "/skins-minimal";
constexpr std::string_view kGrantPrefix = "/tav-loot/v1/loot-grants/";
constexpr std::string_view kTokenPath = "/tav-inventory/v1/signedInventory";

}  // namespace

void PluginInputs::TakeResource(std::string_view path, std::optional<std::string_view> data) {
  if (path == kSessionPath) return TakeSession(data);
  if (!data) return;
  if (path.ends_with("/champions-minimal")) perhapsRead_ |= kChampions;
  for (const Source& source : kSources) {
    if (path.ends_with(source.end)) surelyRead_ |= source.bit;
  }
  if (!path.starts_with(kConfigurationPath)) return;
  const std::string_view name = path.substr(kConfigurationPath.size());
  if (name == "Enabled") enabled_ = *data == "true";
  if (name == "PxhEnabled") clientEnabled_ = *data == "true";
  if (name == "InitializationGoalFlags") {
    std::from_chars(data->data(), data->data() + data->size(), goal_);
  }
}

void PluginInputs::TakeSession(std::optional<std::string_view> data) {
  const bool wasConnected = connected_;
  const Json session = data ? ParseJson(*data) : Json();
  connected_ = session.is_object() && session["state"] == "SUCCEEDED";
  if (!data) followedSummoner_.clear();
  if (connected_ && !wasConnected) followedSummoner_ = session["summonerId"].dump();
  if (data && connected_ == wasConnected) return;
  skinsAreLate_ = true;
  arrivedRead_ = 0;
}

void PluginInputs::TakeRequest(std::string_view url) {
  if (url.ends_with(kSkinsEnd)) skinsAreLate_ = false;
}

void PluginInputs::TakeResponse(std::string_view url, int32_t status) {
  if (url.starts_with(kTokenPath) && status == 200) perhapsRead_ |= kTournamentLogos;
  if (!url.ends_with(kSkinsEnd)) return;
  const uint32_t bits = status == 200 ? kChampions | kSkins : kChampions;
  perhapsRead_ |= bits;
  if (!skinsAreLate_) arrivedRead_ |= bits;
}

void PluginInputs::TakeDeletion(std::string_view url) {
  if (!url.starts_with(kGrantPrefix)) return;
  int64_t id = 0;
  std::from_chars(url.data() + kGrantPrefix.size(), url.data() + url.size(), id);
  if (shownGrants_.contains(id)) dismissedGrants_.insert(id);
}

void PluginInputs::Settle() {
  surelyRead_ |= std::exchange(arrivedRead_, 0);
}

std::optional<bool> PluginInputs::IsReady() const {
  if ((surelyRead_ & goal_) == goal_) return true;
  if (((surelyRead_ | perhapsRead_) & goal_) != goal_) return false;
  return std::nullopt;
}

}  // namespace Kest::Host
