#include <algorithm>
#include <initializer_list>

#include "host/audit/routes.h"
#include "host/simulation/checks/checks.h"

namespace Kest::Host {
namespace {

constexpr std::string_view kMenuEnd = "/context-menu";

// What was read at a path; discarded when it was not read.
Json ReadAt(const QuietState& state, std::string_view path) {
  const auto reply = state.responses.find(path);
  return ParseJson(reply == state.responses.end() ? std::string_view() : reply->second.body);
}

class Explained {
 public:
  Explained(const QuietState& state, std::string_view question, Findings* findings)
      : question_(question), findings_(findings) {
    const auto reply = state.explanations.find(question);
    if (reply == state.explanations.end()) return;
    document_ = ParseJson(reply->second.body);
    if (reply->second.status == 200 && document_.is_object()) return;
    findings->Add("a decision is explained", "200 from " + question_,
                  std::to_string(reply->second.status) + " " + reply->second.message);
    document_ = Json::object();
  }

  // What the explanation says there is what is read; what was not read is not compared.
  void Expect(std::initializer_list<const char*> members, const Json& read) const {
    const Json* said = &document_;
    std::string place = question_;
    for (const char* const member : members) {
      const auto found = said->find(member);
      said = found == said->end() ? &missing_ : &*found;
      place.append(" ").append(member);
    }
    if (read.is_discarded() || *said == read) return;
    findings_->Add("an explanation says what the plugin does", place + " " + WriteJson(read),
                   WriteJson(*said));
  }

 private:
  const Json missing_;
  const std::string question_;
  Findings* const findings_;
  Json document_ = Json::object();
};

void CheckItem(const QuietState& state, const std::string& lootId, const Json& map,
               const Json& menu, Findings* findings) {
  const Explained item(state, "item/" + lootId, findings);
  item.Expect({"isHeld"}, map.contains(lootId));
  if (!map.contains(lootId)) return;
  for (const char* const status : {"itemStatus", "parentItemStatus", "redeemableStatus"}) {
    item.Expect({status}, map[lootId][status]);
  }
  if (!menu.is_array()) return;
  const auto redeem = std::find_if(
      menu.begin(), menu.end(), [](const Json& entry) { return entry["actionType"] == "REDEEM"; });
  item.Expect({"redeem", "isOffered"}, redeem != menu.end());
  if (redeem == menu.end()) return;
  item.Expect({"redeem", "isEnabled"}, (*redeem)["enabled"]);
}

}  // namespace

void CheckExplanations(const QuietState& state, Findings* findings) {
  const Explained enabled(state, "enabled", findings);
  enabled.Expect({"enabled"}, ReadAt(state, "/tav-loot/v1/enabled"));
  const Explained ready(state, "ready", findings);
  ready.Expect({"ready"}, ReadAt(state, "/tav-loot/v1/ready"));
  const Explained grants(state, "grants", findings);
  grants.Expect({"shown"}, ReadAt(state, "/tav-loot/v1/loot-grants"));
  const Explained retrieval(state, "retrieval", findings);
  if (state.lostResponses == 0) retrieval.Expect({"running"}, 0);
  const Json map = ReadAt(state, kMapPath);
  if (!map.is_object()) return;
  retrieval.Expect({"isPending"}, false);
  for (const std::string_view path : kInventoryPaths) {
    if (!path.ends_with(kMenuEnd)) continue;
    std::string_view lootId = path.substr(kItemPrefix.size());
    lootId.remove_suffix(kMenuEnd.size());
    CheckItem(state, std::string(lootId), map, ReadAt(state, path), findings);
  }
}

}  // namespace Kest::Host
