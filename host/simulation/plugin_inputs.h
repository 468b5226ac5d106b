// What has reached the plugin since it started, as far as its switches, its readiness and its
// subscriptions follow from it.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace Kest::Host {

class PluginInputs {
 public:
  void Reset() { *this = PluginInputs(); }

  void TakeResource(std::string_view path, std::optional<std::string_view> data);
  void TakeRequest(std::string_view url);
  void TakeResponse(std::string_view url, int32_t status);
  void TakeAsk(std::string_view url) {
    isSaidToBeDone_ |= url == "/tav-loot/v1/new-player-check-done/true";
  }
  // A request of method DELETE that succeeded. Only what was shown before is dismissed by it.
  void TakeDeletion(std::string_view url);
  void TakeShownGrants(std::set<int64_t> ids) { shownGrants_ = std::move(ids); }
  // There is a packet of a login, to be followed.
  void NoteLoginPacket() { ++loginPackets_; }

  // Nothing is due any more: what was read stays read.
  void Settle();

  // Both switches are on. A deleted value changes nothing.
  bool IsEnabled() const { return enabled_ && clientEnabled_; }
  // Whether the plugin must be ready; nothing: it depends on what was late.
  std::optional<bool> IsReady() const;
  // Whose collections the plugin follows; empty: no one follows any.
  const std::string& FollowedSummoner() const { return followedSummoner_; }
  bool IsSaidToBeDone() const { return isSaidToBeDone_; }  // the new player's check
  int LoginPackets() const { return loginPackets_; }
  const std::set<int64_t>& DismissedGrants() const { return dismissedGrants_; }

 private:
  void TakeSession(std::optional<std::string_view> data);

  bool enabled_ = false;
  bool clientEnabled_ = false;
  bool connected_ = false;
  uint32_t goal_ = 63;
  uint32_t surelyRead_ = 0;
  uint32_t perhapsRead_ = 0;
  uint32_t arrivedRead_ = 0;  // counts unless the session changes before its task goes on
  bool skinsAreLate_ = true;  // the session changed since they were asked for
  std::string followedSummoner_;
  bool isSaidToBeDone_ = false;
  int loginPackets_ = 0;
  std::set<int64_t> shownGrants_;
  std::set<int64_t> dismissedGrants_;
};

}  // namespace Kest::Host
