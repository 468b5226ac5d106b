#include <set>

#include "host/simulation/checks/checks.h"
#include "host/simulation/json_digest.h"

namespace Kest::Host {
namespace {

// The digests of the items in a map, below `depth` - 1 members.
PublishedState::Digests ItemsOf(std::string_view json, int depth) {
  PublishedState::Digests items;
  DigestJson(json, ArrayOrder::kKept, [&](int at, std::string_view id, uint64_t digest, int64_t) {
    if (at == depth) items.insert_or_assign(std::string(id), digest);
  });
  return items;
}

std::string Differences(const PublishedState::Digests& expected,
                        const PublishedState::Digests& found) {
  std::string text;
  for (const auto& [id, digest] : found) {
    const auto other = expected.find(id);
    const bool isNew = other == expected.end();
    if (isNew || other->second != digest) text += id + (isNew ? " is new; " : " differs; ");
  }
  for (const auto& [id, digest] : expected) {
    if (!found.contains(id)) text += id + " is missing; ";
  }
  return text;
}

}  // namespace

void CheckReads(const QuietState& state, Findings* findings) {
  for (const auto& [path, reply] : state.responses) {
    if (reply.status == 200) continue;
    findings->Add("a read of what is held succeeds", "200 from " + path,
                  std::to_string(reply.status) + " " + reply.message);
  }
}

void CheckItems(const QuietState& state, Findings* findings) {
  const std::pair<std::string_view, int> kMaps[] = {{"/tav-loot/v1/player-loot-map", 1},
                                                    {"/tav-loot/v2/player-loot-map", 2}};
  for (const auto& [path, depth] : kMaps) {
    const auto response = state.responses.find(path);
    if (response == state.responses.end()) continue;
    const std::string differences =
        Differences(state.published.items(), ItemsOf(response->second.body, depth));
    if (differences.empty()) continue;
    findings->Add("the items published add up to those returned",
                  "the published items from " + std::string(path), differences);
  }
}

void CheckValues(const QuietState& state, Findings* findings) {
  for (const auto& [path, reply] : state.responses) {
    const auto published = state.published.Find(path);
    if (!published || *published == PublishedState::Digest(path, reply.body)) continue;
    findings->Add("a value that was published is the value returned",
                  "the value last published at " + path, reply.body.substr(0, 1000));
  }
}

void CheckGrants(const QuietState& state, Findings* findings) {
  const auto response = state.responses.find("/tav-loot/v1/loot-grants");
  if (response == state.responses.end()) return;
  std::set<int64_t> ids;
  for (const Json& grant : ParseJson(response->second.body)) {
    if (ids.insert(grant["id"].get<int64_t>()).second) continue;
    findings->Add("a grant is shown once", "one of each id", response->second.body.substr(0, 1000));
    return;
  }
}

}  // namespace Kest::Host
