#include "plugin/entry_gate.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace Kest {
namespace {

// Stop and a call race for each gate: once it is closed and idle, what the call would use may go.
TEST(EntryGate, AClosedAndIdleGateHasNoCallInsideAndLetsNoneIn) {
  struct Race {
    EntryGate gate;
    std::atomic<bool> isGone = false;
  };
  constexpr int kRaces = 1'500'000;
  const auto races = std::make_unique<Race[]>(kRaces);
  std::atomic<int> stopAt = -1;
  std::atomic<int> late = 0;
  std::thread caller([&] {
    for (int i = 0; i < kRaces; ++i) {
      while (stopAt < i) std::this_thread::yield();
      for (int call = 0; call < 4; ++call) {
        const GateEntry entry(races[i].gate);
        if (entry && races[i].isGone) ++late;
      }
    }
  });
  for (int i = 0; i < kRaces; ++i) {
    stopAt = i;
    races[i].gate.Close();
    while (races[i].gate.CallsInProgress() != 0) {
    }
    races[i].isGone = true;
  }
  caller.join();
  EXPECT_EQ(late, 0);
}

}  // namespace
}  // namespace Kest
