// EntryGate counts calls in progress (rundown protection). Close() rejects new ones; the plugin
// object may go once the count is zero. Threads: any; it holds no lock.
#pragma once

#include <atomic>
#include <cstdint>

namespace Kest {

class EntryGate {
 public:
  // Counts a call. False: the gate is closed and the call is rejected.
  bool Enter() {
    callsInProgress_.fetch_add(1);
    if (!closed_.load()) return true;
    Leave();
    return false;
  }
  // REQUIRES: an Enter that returned true.
  void Leave() { callsInProgress_.fetch_sub(1); }

  // Rejects new calls; those in progress go on.
  void Close() { closed_.store(true); }
  bool IsClosed() const { return closed_.load(); }

  // Once closed, 0 means that no call is in progress and none will be.
  int32_t CallsInProgress() const { return callsInProgress_.load(); }

 private:
  // Enter counts before it reads `closed_`, and closing comes before the count is read. In any
  // order of the four a call is therefore either counted or rejected.
  std::atomic<int32_t> callsInProgress_{0};
  std::atomic<bool> closed_{false};
};

// A call counted for a scope, unless it is rejected.
class GateEntry {
 public:
  explicit GateEntry(EntryGate& gate) : gate_(gate), entered_(gate.Enter()) {}
  ~GateEntry() {
    if (entered_) gate_.Leave();
  }
  GateEntry(const GateEntry&) = delete;
  GateEntry& operator=(const GateEntry&) = delete;

  explicit operator bool() const { return entered_; }

 private:
  EntryGate& gate_;
  const bool entered_;
};

}  // namespace Kest
