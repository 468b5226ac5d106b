#include "host/world/platform/signed_token.h"

#include "host/world/data/platform_constants.h"

namespace Kest::Host {

std::string EncodeBase64(std::string_view bytes) {
  constexpr std::string_view kAlphabet =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  for (size_t i = 0; i < bytes.size(); i += 3) {
    const size_t left = bytes.size() - i;
    uint32_t group = 0;
    for (size_t k = 0; k < 3; ++k) {
      group = group << 8 | (k < left ? static_cast<unsigned char>(bytes[i + k]) : 0U);
    }
    for (size_t k = 0; k < 4; ++k) {
      out += k <= left ? kAlphabet[group >> (18 - 6 * k) & 63] : '=';
    }
  }
  return out;
}

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
