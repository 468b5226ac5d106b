#include <map>

#include "host/simulation/checks/checks.h"

namespace Kest::Host {
namespace {

std::string Describe(const std::map<std::string, int64_t>& counts) {
  std::string text;
  for (const auto& [id, count] : counts) text += id + " x" + std::to_string(count) + " ";
  return text;
}

}  // namespace

void CheckInventory(const QuietState& state, Findings* findings) {
  const auto response = state.responses.find("/tav-loot/v1/player-loot-map");
  if (!state.knowsAll || response == state.responses.end()) return;
  std::map<std::string, int64_t> expected;
  for (const Json& record : state.platform["inventory"]) {
    const std::string refId = record["refId"].get<std::string>();
    std::string lootId = record["lootName"].get<std::string>();
    if (!refId.empty()) lootId.append("-").append(refId);
    expected[lootId] = record["count"].get<int64_t>();
  }
  std::map<std::string, int64_t> found;
  const Json items = ParseJson(response->second.body);
  for (const auto& [id, item] : items.items()) {
    found[id] = item["count"].get<int64_t>();
  }
  if (found != expected) {
    findings->Add("the items and their counts are the platform's", Describe(expected),
                  Describe(found));
  }
}

// Crossing retrievals leave lists out; whichever is applied, the definitions must not be lost.
void CheckDefinitions(const QuietState& state, Findings* findings) {
  const auto response = state.responses.find("/tav-loot/v1/loot-items");
  if (response == state.responses.end() || response->second.body != "[]") return;
  findings->Add("definitions that were retrieved stay", "loot items", response->second.body);
}

}  // namespace Kest::Host
