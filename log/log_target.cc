#include "log/log_target.h"

#include <cassert>
#include <thread>

#include "log/logger.h"

namespace Kest {
namespace {

GroupMask Join(uint32_t low, uint32_t high) {
  return uint64_t{high} << 32 | low;
}

constexpr LogTargetEntries kEntries = {
    .setLevel = [](LogTarget* self,
                   int32_t level) noexcept { self->SetLevel(static_cast<Level>(level)); },
    .getLevel =
        [](const LogTarget* self) noexcept { return static_cast<int32_t>(self->GetLevel()); },
    .setMasks =
        [](LogTarget* self, uint32_t includedLow, uint32_t includedHigh, uint32_t excludedLow,
           uint32_t excludedHigh) noexcept {
          self->SetMasks(Join(includedLow, includedHigh), Join(excludedLow, excludedHigh));
        },
    .getIncludedMask = [](const LogTarget* self) noexcept { return self->IncludedMask(); },
    .getExcludedMask = [](const LogTarget* self) noexcept { return self->ExcludedMask(); },
    .getEnabled = [](const LogTarget* self) noexcept { return self->IsAttached(); },
    .flush = [](LogTarget* self) noexcept { self->TryFlush(); },
    .write = [](LogTarget* self, const LogRecord* record) noexcept { self->TryWrite(*record); },
};

}  // namespace

LogTarget::LogTarget(std::string_view lineTemplate) : lineTemplate_(lineTemplate) {}

LogTarget::~LogTarget() {
  assert(!IsAttached());
}

// Dispatch locks the logger, then its targets; here the target comes first. So the logger is only
// tried, and both are let go when it is busy.
void LogTarget::Detach() {
  for (;;) {
    {
      MutexLock hold(mutex_);
      if (!IsAttached() || Logger::Instance().TryRemove(*this)) return;
    }
    std::this_thread::yield();
  }
}

std::string_view LogTarget::LineTemplate() const {
  return lineTemplate_;
}

bool LogTarget::Accepts(Level level, GroupMask groups) const {
  if (level < GetLevel()) return false;
  if (groups == kNoGroups) return true;
  if ((groups & ExcludedMask()) != 0) return false;
  const GroupMask included = IncludedMask();
  return included == kNoGroups || (groups & included) != 0;
}

void LogTarget::SetMasks(GroupMask included, GroupMask excluded) {
  included_.store(included & ~excluded, std::memory_order_relaxed);
  excluded_.store(excluded, std::memory_order_relaxed);
}

void LogTarget::TryWrite(const LogRecord& record) noexcept {
  try {
    Write(record);
  } catch (...) {
    // The failure has no other place to go; the caller and the other targets go on.
  }
}

void LogTarget::TryFlush() noexcept {
  try {
    Flush();
  } catch (...) {
    // As above.
  }
}

const LogTargetEntries& LogTarget::Entries() {
  return kEntries;
}

}  // namespace Kest
