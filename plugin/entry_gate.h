// EntryGate counts who is inside the plugin, so that stop can shut the door and wait until the last
// one has left before the plugin object goes.
// Threads: any; it holds no lock.
#pragma once

#include <atomic>
#include <cstdint>

namespace Kest {

class EntryGate {
 public:
  // Counts the caller in. False: the gate is closed and the caller stays outside.
  bool Enter() {
    inside_.fetch_add(1);
    if (!closed_.load()) return true;
    Leave();
    return false;
  }
  // REQUIRES: an Enter that answered true.
  void Leave() { inside_.fetch_sub(1); }

  // Lets nobody in from now on. Those inside stay until they leave.
  void Close() { closed_.store(true); }
  bool IsClosed() const { return closed_.load(); }

  // Once closed, 0 means that nobody is inside and nobody will be.
  int32_t Inside() const { return inside_.load(); }

 private:
  // Counting in comes before the look at the door, and closing before the look at the count; in one
  // order of all four an entry is therefore either counted or turned away.
  std::atomic<int32_t> inside_{0};
  std::atomic<bool> closed_{false};
};

// Stands inside the gate for a scope, when it is let in.
class GateEntry {
 public:
  explicit GateEntry(EntryGate& gate) : gate_(gate), inside_(gate.Enter()) {}
  ~GateEntry() {
    if (inside_) gate_.Leave();
  }
  GateEntry(const GateEntry&) = delete;
  GateEntry& operator=(const GateEntry&) = delete;

  explicit operator bool() const { return inside_; }

 private:
  EntryGate& gate_;
  const bool inside_;
};

}  // namespace Kest
