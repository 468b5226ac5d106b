// Explainer responds to questions about what the plugin decides, from the decisions themselves:
// their conditions, results and reasons are values of the objects that decide. An explanation is a
// JSON document; each has a "reason" for people, and members for programs. Where the newest value
// of a sibling resource that the decision follows did not convert, so that an older one still
// counts, the reason says so and "unconverted" lists the resources. It changes nothing and logs
// nothing.
//
// Questions:
//   enabled     why loot is enabled or disabled
//   ready       each data source: whether it is in the goal, has responded, what it waits for
//   retrieval   whether an inventory is held, under way, and what a refresh would do now
//   chest       each condition of the new player's chest
//   grants      whether grants are shown or wait
//   item/{lootId}                 the steps that made the item, or why there is none
//   recipe/{name}?items=id,id     what its slots take, what fits and what is missing: of these
//   items,
//                                 or of all that are held
//
// Failures: 404 for an unknown question, 400 for an argument that it does not take.
// Threads: module tasks only; it does not wait.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "api/query_string.h"
#include "api/response.h"
#include "base/maybe_type.h"
#include "binding/tree/binding_property.h"
#include "loot/calls/forward.h"

namespace Kest::Client::Loot {

class Explainer {
 public:
  // Who decides; all outlive it.
  struct Deciders {
    const SiblingClient& client;
    const LootSwitch& loot;
    const LootState& state;
    const LootInventory& inventory;
    const SourceReadiness& readiness;
    const CollectionSources& sources;
    const TournamentLogos& logos;
    const PlayerSession& session;
    const LootRetrieval& retrieval;
    const NewPlayerChest& chest;
    const GrantNotices& grants;
  };
  explicit Explainer(const Deciders& deciders) : deciders_(deciders) {}

  // `question` is a path and query, percent-encoded: "ready".
  Response Explain(std::string_view question) const;

 private:
  struct Asked {
    std::string subject;  // what follows the question's name: the loot id of "item/CHEST_1"
    std::vector<QueryPair> arguments;
  };
  struct Question {
    std::string_view name;
    std::string_view subject;   // what its subject is; empty: it takes none
    std::string_view argument;  // the one it takes; empty: none
    Maybe<BindingProperty> (Explainer::*explain)(const Asked& asked) const;
    std::span<const std::string_view> follows;  // sibling resources that it depends on
  };
  static const Question kQuestions[];

  static std::string KnownQuestions();
  void AddUnconverted(std::span<const std::string_view> paths, BindingProperty* explanation) const;
  Maybe<BindingProperty> Find(std::string_view question) const;

  Maybe<BindingProperty> Enabled(const Asked& asked) const;
  Maybe<BindingProperty> Ready(const Asked& asked) const;
  Maybe<BindingProperty> Retrieval(const Asked& asked) const;
  Maybe<BindingProperty> Chest(const Asked& asked) const;
  Maybe<BindingProperty> Grants(const Asked& asked) const;
  Maybe<BindingProperty> Item(const Asked& asked) const;
  Maybe<BindingProperty> Recipe(const Asked& asked) const;

  const Deciders deciders_;
};

}  // namespace Kest::Client::Loot
