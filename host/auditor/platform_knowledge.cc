#include "host/auditor/platform_knowledge.h"

#include <utility>

#include "host/audit/json_digest.h"

namespace Kest::Host {
namespace {

constexpr std::string_view kResponseEvent = "OnServiceProxyUuidEvent";

uint64_t DigestOf(const Inventory& inventory) {
  uint64_t digest = 1;
  for (const auto& [key, record] : inventory.records()) {
    digest = Mix(digest, Mix(DigestText(key.lootName), DigestText(key.refId)));
    digest = Mix(digest, static_cast<uint64_t>(record.count));
  }
  return digest;
}

}  // namespace

void PlatformKnowledge::Reset() {
  const MutexLock lock(mutex_);
  ledger_.Reset();
  onTheirWay_.clear();
  held_ = 0;
  isChanged_ = false;
}

void PlatformKnowledge::NoteCall(const Inventory& held, std::span<const WorldEvent> caused,
                                 bool isControl) {
  using Kind = ResponseLedger::Kind;
  const uint64_t digest = DigestOf(held);
  const MutexLock lock(mutex_);
  const bool isPlain = !std::exchange(isChanged_, false) && !isControl;
  bool isReported = false;
  for (const WorldEvent& event : caused) {
    if (event.name != kResponseEvent) continue;
    if (!isPlain) ledger_.NoteUntold();
    const Kind kind = isPlain ? ResponseLedger::KindOf(event.payload) : Kind::kOther;
    onTheirWay_[event.cause] = {kind, ledger_.NoteAct(kind)};
    isReported |= kind == Kind::kChange;
  }
  if (std::exchange(held_, digest) != digest && !isReported) ledger_.NoteUntold();
}

void PlatformKnowledge::NoteFault(std::string_view name) {
  if (name.starts_with('/')) return;
  const MutexLock lock(mutex_);
  isChanged_ = true;
}

void PlatformKnowledge::NoteArrival(uint64_t cause) {
  const MutexLock lock(mutex_);
  const auto act = onTheirWay_.extract(cause);
  if (!act.empty()) ledger_.NoteArrival(act.mapped().kind, act.mapped().number);
}

bool PlatformKnowledge::IsComplete() const {
  const MutexLock lock(mutex_);
  return ledger_.PluginKnowsAll();
}

}  // namespace Kest::Host
