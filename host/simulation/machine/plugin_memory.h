// The memory of the plugin's code in a program that has the plugin linked in: operator new of the
// whole program is replaced, and what the plugin asks for is distinguished from what the host asks
// for by marks at the edge of the C interface. An allocation can be made to fail.
//
// Threads: one; allocations of other threads count as the host's.
#pragma once

#include <cstddef>
#include <cstdint>

namespace Kest::Host {

// Marks who runs, for a scope. Scopes nest; each fiber has its own on its stack.
class RunningCode {
 public:
  enum class Of { kHost, kPlugin };
  explicit RunningCode(Of code);
  ~RunningCode();
  RunningCode(const RunningCode&) = delete;
  RunningCode& operator=(const RunningCode&) = delete;

 private:
  const Of before_;
};

class PluginMemory {
 public:
  // The `nth` allocation of the plugin from now on fails, once; 0: none does.
  static void FailAt(uint64_t nth);
  // From now on none fails.
  static void Recover() {
    FailAt(0);
    RefuseAbove(0);
  }
  // Every block of the plugin above that size is refused; 0: none.
  static void RefuseAbove(size_t bytes);
  // Whether an allocation of the plugin has failed so far.
  static bool HasFailed();
  // Allocations of the plugin so far.
  static uint64_t Allocations();
  // Blocks of the plugin that are not freed.
  static int64_t LiveBlocks();
};

}  // namespace Kest::Host
