#include "loot/explain/state_explanations.h"

#include <string>

#include "loot/calls/collection_sources.h"
#include "loot/calls/grant_notices.h"
#include "loot/calls/loot_retrieval.h"
#include "loot/calls/new_player_chest.h"
#include "loot/calls/player_session.h"
#include "loot/calls/source_readiness.h"
#include "loot/calls/tournament_logos.h"
#include "loot/explain/condition_tree.h"
#include "loot/state/loot_switch.h"

namespace Kest::Client::Loot {
namespace {

struct SourceName {
  ReadinessBit bit;
  std::string_view name;
};
constexpr SourceName kSources[] = {
    {kReadyChampions, "champions"},
    {kReadySkins, "skins"},
    {kReadyWardSkins, "wardSkins"},
    {kReadySummonerIcons, "summonerIcons"},
    {kReadyTournamentLogos, "tournamentLogos"},
    {kReadyEmotes, "emotes"},
};
constexpr uint8_t kAllSources = kReadyChampions | kReadySkins | kReadyWardSkins |
                                kReadySummonerIcons | kReadyTournamentLogos | kReadyEmotes;

BindingProperty SourceTree(const SourceName& source, const SourceReadiness& readiness,
                           const SourceWait& wait, std::string_view failure) {
  const bool hasResponded = (readiness.RespondedBits() & source.bit) != 0;
  std::string reason = hasResponded ? "It has responded." : wait.reason;
  if (!failure.empty()) reason.append(" Its newest value did not convert: ").append(failure);
  Structure tree{{"name", source.name},
                 {"bit", static_cast<uint8_t>(source.bit)},
                 {"isInGoal", (readiness.goal() & source.bit) != 0},
                 {"hasResponded", hasResponded},
                 {"reason", reason}};
  if (hasResponded) return tree;
  tree.GetOrAddMember("waitsFor").SetString(wait.kind);
  if (!wait.path.empty()) tree.GetOrAddMember("path").SetString(wait.path);
  return tree;
}

std::string ReadyReason(const SourceReadiness& readiness) {
  const uint8_t missing = readiness.MissingBits();
  if (missing == 0) return "Every source of the goal has responded.";
  if ((missing & ~kAllSources) != 0) return "The goal has a bit that no source sets.";
  std::string names;
  for (const SourceName& source : kSources) {
    if ((missing & source.bit) != 0) names.append(names.empty() ? "" : ", ").append(source.name);
  }
  return "These sources have not responded: " + names + ".";
}

std::string RetrievalReason(const LootRetrieval& retrieval, const LootSwitch& loot) {
  const bool isRunning = retrieval.Running() > 0;
  if (!retrieval.Pending()) {
    return isRunning ? "An inventory is held, and a newer one is on its way."
                     : "An inventory is held.";
  }
  if (isRunning) return "The first inventory is on its way.";
  if (!loot.Enabled()) return "No inventory was retrieved: loot is disabled.";
  return retrieval.LastFailure().empty()
             ? "No inventory was retrieved yet: the next read of loot data does it."
             : "The last retrieval failed; the next read of loot data tries again: " +
                   retrieval.LastFailure();
}

BindingProperty RefreshTree(const LootRetrieval::Decision& decision) {
  return Structure{
      {"result", decision.result}, {"isSent", decision.isSent}, {"reason", decision.because}};
}

}  // namespace

BindingProperty ExplainEnabled(const LootSwitch& loot) {
  const auto conditions = loot.EnabledConditions();
  return Structure{{"enabled", AllHold(conditions)},
                   {"reason", ReasonOf(conditions, "Both configuration values are true.")},
                   {"conditions", ConditionsTree(conditions)}};
}

BindingProperty ExplainReady(const SourceReadiness& readiness, const CollectionSources& sources,
                             const TournamentLogos& logos, const PlayerSession& session) {
  BindingProperty list = BindingProperty::Collection();
  for (const SourceName& source : kSources) {
    const bool isOfLogos = source.bit == kReadyTournamentLogos;
    list.Append() =
        SourceTree(source, readiness, isOfLogos ? logos.Wait() : sources.WaitOf(source.bit),
                   sources.ConversionFailureOf(source.bit));
  }
  const auto conditions = session.ConnectedConditions();
  return Structure{{"ready", readiness.Ready()},
                   {"reason", ReadyReason(readiness)},
                   {"goal", readiness.goal()},
                   {"responded", readiness.RespondedBits()},
                   {"sources", list},
                   {"session", Structure{{"isConnected", AllHold(conditions)},
                                         {"reason", ReasonOf(conditions, "A player is signed in.")},
                                         {"conditions", ConditionsTree(conditions)}}}};
}

BindingProperty ExplainRetrieval(const LootRetrieval& retrieval, const LootSwitch& loot) {
  const int64_t now = retrieval.Now();
  const LootRetrieval::Versions& held = retrieval.HeldVersions();
  return Structure{{"isPending", retrieval.Pending()},
                   {"reason", RetrievalReason(retrieval, loot)},
                   {"running", uint64_t{retrieval.Running()}},
                   {"lastFailure", retrieval.LastFailure()},
                   {"lastSent", retrieval.LastSent()},
                   {"throttledUntil", retrieval.ThrottledUntil()},
                   {"now", now},
                   {"versions", Structure{{"items", held.items},
                                          {"recipes", held.recipes},
                                          {"queryResults", held.queryResults}}},
                   {"refresh", RefreshTree(retrieval.Decide(/*isForced=*/false, now))},
                   {"forcedRefresh", RefreshTree(retrieval.Decide(/*isForced=*/true, now))}};
}

BindingProperty ExplainChest(const NewPlayerChest& chest) {
  const auto needed = chest.ChestConditions();
  const auto scheduled = chest.ScheduleConditions();
  return Structure{
      {"wouldRequest", AllHold(needed)},
      {"reason", ReasonOf(needed, "A check requests the chest.")},
      {"conditions", ConditionsTree(needed)},
      {"isDone", chest.IsDone()},
      {"summonerLevel", chest.summonerLevel()},
      {"minimumSummonerLevel", chest.minimumLevel()},
      {"schedule",
       Structure{{"wouldPost", AllHold(scheduled)},
                 {"reason", ReasonOf(scheduled, "A change of the configuration posts a check.")},
                 {"conditions", ConditionsTree(scheduled)},
                 {"periodEnd", chest.PeriodEnd()},
                 {"now", chest.Now()}}}};
}

BindingProperty ExplainGrants(const GrantNotices& grants) {
  const auto conditions = grants.ShownConditions();
  const auto phase = grants.Phase();
  return Structure{{"isAllowed", AllHold(conditions)},
                   {"reason", conditions.front().Reason()},
                   {"phase", phase ? ValueTree(*phase) : BindingProperty()},
                   {"shown", ValueTree(grants.Shown())},
                   {"queued", ValueTree(grants.Queued())}};
}

}  // namespace Kest::Client::Loot
