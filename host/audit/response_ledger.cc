#include "host/audit/response_ledger.h"

#include <string>

#include "host/world/data/platform_constants.h"

namespace Kest::Host {

ResponseLedger::Kind ResponseLedger::KindOf(std::string_view payload) {
  if (!payload.ends_with(R"("status":"OK","error":""})")) return Kind::kOther;
  const auto isOf = [payload](std::string_view method) {
    const std::string member = "\"methodName\":\"" + std::string(method) + "\"";
    return payload.find(member) != std::string_view::npos;
  };
  if (isOf(kRetrievalMethod)) return Kind::kSnapshot;
  if (isOf(kNewPlayerChestMethod)) return Kind::kGrant;
  return isOf(kCraftMethod) || isOf(kRedeemMethod) ? Kind::kChange : Kind::kOther;
}

void ResponseLedger::NoteArrival(Kind kind, uint64_t number) {
  if (kind == Kind::kSnapshot) {
    if (newestChange_ > number || newestSnapshot_ > number) unknownSince_ = now_;
    lastSnapshot_ = number;
    newestSnapshot_ = std::max(newestSnapshot_, number);
  } else if (kind == Kind::kChange) {
    if (newestSnapshot_ > number) unknownSince_ = now_;
    newestChange_ = std::max(newestChange_, number);
  }
}

}  // namespace Kest::Host
