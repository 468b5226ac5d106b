#include "host/world/platform/signed_token.h"

#include "host/json/base64.h"
#include "host/world/data/platform_constants.h"

namespace Kest::Host {

std::string TournamentLogoToken(const PlatformCollections& collections, uint64_t summonerId) {
  Json logos = Json::array();
  for (const auto& [id, logo] : collections[Collection::kTournamentLogos]) {
    if (!logo.ownership.owned) continue;
    const Json reward = Json{{"name", std::to_string(id)}};
    logos.push_back(Json{{"inventoryType", kTournamentLogoInventory},
                         {"payload", Json{{"rewardSpec", reward}}}});
  }
  const Json header = Json{{"alg", "none"}, {"typ", "JWT"}};
  const Json items = Json{{std::string(kTournamentLogoInventory), std::move(logos)}};
  const Json payload = Json{{"sub", std::to_string(summonerId)}, {"items", items}};
  return EncodeBase64(WriteJson(header)) + "." + EncodeBase64(WriteJson(payload)) + "." +
         EncodeBase64("unsigned sample");
}

}  // namespace Kest::Host
