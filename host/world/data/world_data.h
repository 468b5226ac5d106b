// What a world file says, checked and ready to use, and what has become of it since: a running
// world keeps its state here, so that all of it can be written as a world file again
// (world_writer.h).
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "host/json/json.h"
#include "host/world/data/collections.h"
#include "host/world/data/inventory.h"
#include "host/world/data/seeded_random.h"

namespace Kest::Host {

// Here and below: `record` is the whole as the service returns it.
struct LootDefinition {
  std::string lootName;
  std::string type;
  int64_t storeItemId = -1;
  int64_t expiryTime = -1;
  Json record;
};

struct PlatformRecipeSlot {
  int64_t slotNumber = 0;
  int64_t quantity = 1;
  std::unordered_set<std::string> accepted;  // loot names and loot ids
  Json record;
};

struct PlatformRecipeOutput {
  std::string lootName;  // a definition or an odds table
  int64_t quantity = 1;
  double probability = 1;
  bool allowDuplicates = true;
};

struct PlatformRecipe {
  std::string recipeName;
  std::vector<PlatformRecipeSlot> slots;  // by rising slot number
  std::vector<PlatformRecipeOutput> outputs;
  Json record;
};

struct OddsEntry {
  std::string lootName;
  int64_t weight = 1;
  int64_t quantity = 1;
};

// A message that waits in the login data packet.
struct LoginMessage {
  std::string msgId;
  std::string type;
  std::vector<std::string> params;
};

// A message the platform can push, by the name a control gives.
struct PreparedMessage {
  std::string clientId;
  std::string subtopic;
  std::string typeName;
  Json body;
};

struct Player {
  uint64_t summonerId = 0;
  uint64_t accountId = 0;
  int64_t summonerLevel = 1;
  std::string displayName;
};

struct DefinitionVersions {
  int64_t lootItems = 1;
  int64_t recipes = 1;
  int64_t queries = 1;
};

// The two numbers that a session has.
struct PlayerIds {
  uint64_t summonerId = 0;
  uint64_t accountId = 0;
  friend bool operator==(const PlayerIds&, const PlayerIds&) = default;
};

// What the signed inventory holds instead of its own token.
struct TokenOverride {
  std::optional<std::string> token;  // nothing: no token
};

// What no other part of a world says: what has happened in it.
struct PlatformState {
  bool decidesSignIn = false;         // signedIn counts when the world begins
  std::optional<PlayerIds> signedIn;  // who plays; nothing: no player
  std::optional<std::string> phase;   // of the game
  bool newPlayerChestGranted = false;
  bool withholdsCollections = false;  // they are not published yet
  std::optional<TokenOverride> token;
  std::optional<RandomPlace> random;  // of the loot service; nothing: the start of the seed
};

// A control call that makes a world what it is meant to show.
struct ScenarioStep {
  std::string method;
  std::string path;  // "/_host/messages"
  std::string body;  // JSON, or empty
  int64_t afterMilliseconds = 0;
  std::string place;  // "file:line:column"
};

struct WorldData {
  std::string name;
  std::string description;          // one sentence
  std::vector<ScenarioStep> steps;  // in the order in which they are called
  PlatformState state;
  int64_t latency = 0;                       // milliseconds until a service responds
  std::map<std::string, int64_t> latencies;  // by method, where it differs
  Player player;
  Inventory inventory;
  PlatformCollections collections;
  std::map<std::string, Json> configuration;
  Json clientConfiguration;    // as the service returns it
  std::string newPlayerChest;  // empty: this platform has none
  DefinitionVersions versions;

  std::vector<LootDefinition> definitions;
  std::unordered_map<std::string, size_t> definitionIndex;
  Json queries = Json::object();  // query to loot names, as the service returns them
  std::vector<PlatformRecipe> recipes;
  std::unordered_map<std::string, size_t> recipeIndex;
  std::unordered_map<std::string, std::vector<OddsEntry>> odds;

  Json lootData;  // the game-data file of names and pictures
  std::vector<LoginMessage> loginMessages;
  std::map<std::string, PreparedMessage> messages;

  const LootDefinition* FindDefinition(const std::string& lootName) const {
    const auto found = definitionIndex.find(lootName);
    return found == definitionIndex.end() ? nullptr : &definitions[found->second];
  }
  const PlatformRecipe* FindRecipe(const std::string& recipeName) const {
    const auto found = recipeIndex.find(recipeName);
    return found == recipeIndex.end() ? nullptr : &recipes[found->second];
  }
};

bool IsGameflowPhase(std::string_view word);
// A reference id that can stand in a loot id and in a path.
bool IsLootRefId(std::string_view text);
// What keeps `key` from being an item of this world, in words; empty when nothing does.
std::string LootKeyFault(const WorldData& data, const LootKey& key);

}  // namespace Kest::Host
