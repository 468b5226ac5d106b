#include "host/audit/comparisons.h"
#include "host/audit/routes.h"
#include "host/simulation/checks/checks.h"

namespace Kest::Host {
void CheckReads(const QuietState& state, Findings* findings) {
  for (const auto& [path, reply] : state.responses) {
    if (reply.status == 200) continue;
    findings->Add("a read of what is held succeeds", "200 from " + path,
                  std::to_string(reply.status) + " " + reply.message);
  }
}

void CheckItems(const QuietState& state, Findings* findings) {
  const std::pair<std::string_view, ReadMap (*)(std::string_view)> kMaps[] = {
      {kMapPath, ReadItemMap}, {kVersionedMapPath, ReadVersionedItemMap}};
  for (const auto& [path, read] : kMaps) {
    const auto response = state.responses.find(path);
    if (response == state.responses.end()) continue;
    const std::string differences =
        Differences(state.published.items(), read(response->second.body).items);
    if (differences.empty()) continue;
    findings->Add("the items published add up to those returned", "the published items",
                  differences, std::string(path));
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

std::set<int64_t> ShownGrants(const QuietState& state) {
  std::set<int64_t> ids;
  const auto response = state.responses.find("/tav-loot/v1/loot-grants");
  if (response == state.responses.end()) return ids;
  for (const Json& grant : ParseJson(response->second.body)) ids.insert(grant["id"].get<int64_t>());
  return ids;
}

void CheckGrants(const QuietState& state, Findings* findings) {
  const auto response = state.responses.find("/tav-loot/v1/loot-grants");
  if (response == state.responses.end()) return;
  const std::set<int64_t> ids = ShownGrants(state);
  const std::string body = response->second.body.substr(0, 1000);
  if (ids.size() != ParseJson(response->second.body).size()) {
    findings->Add("a grant is shown once", "one of each id", body);
  }
  for (const int64_t id : state.inputs.DismissedGrants()) {
    if (!ids.contains(id)) continue;
    findings->Add("a grant that was dismissed is gone", "none of the id " + std::to_string(id),
                  body);
  }
}

}  // namespace Kest::Host
