#include "loot/calls/tournament_logos.h"

#include <map>
#include <string>
#include <vector>

#include "client/find_value.h"
#include "client/sibling_client.h"
#include "log/logger.h"
#include "log/trace.h"
#include "loot/calls/source_readiness.h"
#include "loot/model/decimal_string.h"
#include "loot/model/loot_constants.h"
#include "loot/token/json_reader.h"
#include "loot/token/signed_token.h"
#include "plugin/app_module.h"

namespace Kest::Client::Loot {
namespace {

constexpr std::string_view kSignedInventoryPath = "/tav-inventory/v1/signedInventory";

std::string_view CastToString(const BindingProperty& value) {
  if (value.kind() != BindingKind::kString) throw json::Exception("Bad cast");
  return value.AsString();
}

const BindingProperty& CastToArray(const BindingProperty& value) {
  if (value.kind() != BindingKind::kCollection) throw json::Exception("Bad cast");
  return value;
}

}  // namespace

void TournamentLogos::Load() {
  using Tokens = std::map<std::string, std::string>;
  const uint64_t load = ++loads_;
  const InProgress::Mark mark = running_.Begin();
  const std::vector<std::string> types{std::string(kTournamentLogoInventory)};
  const Maybe<Tokens> tokens = client_.Request<Tokens>(HttpMethod::kGet, kSignedInventoryPath,
                                                       Query("inventoryTypes", types));
  if (!tokens) {
    LogError("Failed to retrieve tournament logo player inventory: %s",
             tokens.GetFailure().text.c_str());
    failure_ = tokens.GetFailure().text;
    return;
  }
  const auto token = tokens.GetValue().find(types.front());
  if (token == tokens.GetValue().end()) {
    return Fail("missing JWT token.");
  }
  if (load < applied_) return;  // a later one was the first to be here
  try {
    if (!Apply(token->second)) return;
    applied_ = load;
  } catch (const json::Exception& error) {
    return Fail(error.what());
  }
  failure_.clear();
  readiness_.OnSourceRead(kReadyTournamentLogos);
}

void TournamentLogos::PostLoad() {
  module_.PostTask("LootPlugin.LoadTournamentLogoInventory", [this] { Load(); });
}

SourceWait TournamentLogos::Wait() const {
  if (running_.Count() > 0) {
    const std::string path(kSignedInventoryPath);
    return {"request", "The signed inventory is being requested.", path};
  }
  if (!failure_.empty()) {
    return {"retrieval", "Waits for the next retrieval of the inventory: " + failure_, {}};
  }
  return {"retrieval", "Waits for a retrieval of the inventory: the logos are read with it.", {}};
}

void TournamentLogos::Fail(const std::string& reason) {
  LogError("Unable to load tournament logo inventory - %s", reason.c_str());
  failure_ = reason;
}

bool TournamentLogos::Apply(std::string_view token) {
  const BindingProperty payload = DecodeToken(token).payload;
  collections_.ClearTournamentLogos();
  const BindingProperty* items = FindValue(payload, "items");
  if (items == nullptr) {
    Fail("missing 'items' in JWT payload.");
    return false;
  }
  const BindingProperty* logos = FindValue(*items, kTournamentLogoInventory);
  if (logos == nullptr) {
    Fail("missing '" + std::string(kTournamentLogoInventory) + "' in JWT payload.");
    return false;
  }
  const size_t count = CastToArray(*logos).Size();
  for (size_t i = 0; i < count; ++i) ReadLogo(logos->Element(i));
  return true;
}

void TournamentLogos::ReadLogo(const BindingProperty& element) {
  const BindingProperty* type = FindValue(element, "inventoryType");
  const std::string typeName(type == nullptr ? std::string_view() : CastToString(*type));
  if (typeName != kTournamentLogoInventory) {
    Trace("Invalid logo definition received - wrong inventoryType; expected '%s', got '%s'.",
          std::string(kTournamentLogoInventory).c_str(), typeName.c_str());
    return;
  }
  const BindingProperty* name = &element;
  for (const std::string_view step : {"payload", "rewardSpec", "name"}) {
    name = FindValue(*name, step);
    if (name == nullptr) return;
  }
  const Maybe<int32_t> id = ReadDecimal32(CastToString(*name));
  if (id) collections_.AddTournamentLogo(id.GetValue());
}

}  // namespace Kest::Client::Loot
