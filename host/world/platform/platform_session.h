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
  using Ids = PlayerIds;

  // Both must outlive the session. Puts the resources on the board that exist without a player.
  PlatformSession(WorldData& data, ResourceBoard& board);

  // Signs in whom the world says, or else its player when `byDefault`.
  void SignInAtStart(bool byDefault);
  // Signs out; SignInAtStart signs in who was.
  void BeginAgain();
  // `next` takes the place of the world. Who is signed in stays so, unless `next` decides that;
  // what differs on the board causes events.
  void Adopt(WorldData next);

  // The same ids again change nothing; other ids leave the present session without deleting its
  // resource, as a change of account does.
  void SignIn(Ids ids);
  void SignOut();
  const std::optional<Ids>& ids() const { return state_.signedIn; }

  // Publishes the collections again; only what changed causes events. Does nothing while they are
  // withheld.
  void PublishCollections();
  // Takes the collections away, or publishes them.
  void WithholdCollections(bool withheld);
  void SetSummonerLevel(int64_t level);
  // Replaces what waits for the player and publishes the packet again when a player is signed in.
  void SetLoginMessages(std::vector<LoginMessage> messages);
  // The player has seen a message: the next packet is without it, the present one stays.
  void Acknowledge(const std::string& msgId);
  void SetPhase(const std::optional<std::string>& phase);
  void SetConfiguration(const std::string& name, Json value);
  // False: there is no such value.
  bool RemoveConfiguration(const std::string& name);

  int64_t summonerLevel() const { return data_.player.summonerLevel; }
  const std::optional<std::string>& phase() const { return state_.phase; }
  const std::map<std::string, Json>& configuration() const { return data_.configuration; }
  const std::vector<LoginMessage>& loginMessages() const { return data_.loginMessages; }

 private:
  void PublishLasting();
  void PublishSession(std::string_view state);
  void PublishSummoner();
  void PublishLoginDataPacket();
  void RemoveCollections();
  void Leave();

  WorldData& data_;
  PlatformState& state_ = data_.state;
  ResourceBoard& board_;
  std::optional<Ids> atStart_;  // who the world says is signed in when it begins
};

}  // namespace Kest::Host
