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
  struct Door {
    EntryGate gate;
    std::atomic<bool> isGone = false;
  };
  constexpr int kDoors = 1'500'000;
  const auto doors = std::make_unique<Door[]>(kDoors);
  std::atomic<int> stopAt = -1;
  std::atomic<int> late = 0;
  std::thread caller([&] {
    for (int i = 0; i < kDoors; ++i) {
      while (stopAt < i) std::this_thread::yield();
      for (int call = 0; call < 4; ++call) {
        const GateEntry entry(doors[i].gate);
        if (entry && doors[i].isGone) ++late;
      }
    }
  });
  for (int i = 0; i < kDoors; ++i) {
    stopAt = i;
    doors[i].gate.Close();
    while (doors[i].gate.CallsInProgress() != 0) {
    }
    doors[i].isGone = true;
  }
  caller.join();
  EXPECT_EQ(late, 0);
}

}  // namespace
}  // namespace Kest
