// Who is signed in, and the resources that exist only then: session, summoner, login data packet
// and collections. Also the game's phase and the configuration, which outlive a session.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/world/data/world_data.h"
#include "host/world/platform/resource_board.h"

namespace Kest::Host {

class PlatformSession {
 public:
  struct Ids {
    uint64_t summonerId = 0;
    uint64_t accountId = 0;
    friend bool operator==(const Ids&, const Ids&) = default;
  };

  // All must outlive the session. Puts the resources on the board that exist without a player.
  PlatformSession(const WorldData& data, const PlatformCollections& collections,
                  ResourceBoard& board);

  // The same ids again change nothing; other ids leave the present session without deleting its
  // resource, as a change of account does.
  void SignIn(Ids ids);
  void SignOut();
  const std::optional<Ids>& ids() const { return ids_; }

  // Publishes the collections again; only what changed causes events.
  void PublishCollections();
  void SetSummonerLevel(int64_t level);
  // Replaces what waits for the player and publishes the packet again when a player is signed in.
  void SetLoginMessages(std::vector<LoginMessage> messages);
  // The player has seen a message: the next packet is without it, the present one stays.
  void Acknowledge(const std::string& msgId);
  void SetPhase(const std::optional<std::string>& phase);
  void SetConfiguration(const std::string& name, Json value);
  // False: there is no such value.
  bool RemoveConfiguration(const std::string& name);

  int64_t summonerLevel() const { return summonerLevel_; }
  const std::optional<std::string>& phase() const { return phase_; }
  const std::map<std::string, Json>& configuration() const { return configuration_; }
  const std::vector<LoginMessage>& loginMessages() const { return loginMessages_; }

 private:
  void PublishSession(std::string_view state);
  void PublishSummoner();
  void PublishLoginDataPacket();
  void Leave();

  const WorldData& data_;
  const PlatformCollections& collections_;
  ResourceBoard& board_;
  std::optional<Ids> ids_;
  int64_t summonerLevel_;
  std::vector<LoginMessage> loginMessages_;
  std::optional<std::string> phase_;
  std::map<std::string, Json> configuration_;
};

bool IsGameflowPhase(std::string_view word);

}  // namespace Kest::Host
