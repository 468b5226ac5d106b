// A host that takes all that is published and does nothing with it, and measures how long the
// plugin keeps a module task at a time.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "bench/comparison.h"
#include "plugin/app_module.h"
#include "plugin/entry_gate.h"
#include "plugin/host_services.h"
#include "plugin/runtime_counters.h"

namespace Kest::Bench {

class SliceHost {
 public:
  SliceHost() {
    table_.size = sizeof table_;
    table_.publish = [](const KestHostServices* self, KestText, int32_t, KestBytes json) {
      Of(self).published_ += json.size;
      return true;
    };
    table_.postTask = [](const KestHostServices* self, KestText, KestTask run,
                         void* context) -> int32_t {
      Of(self).tasks_.push_back([=] { run(context); });
      return KEST_TASK_QUEUED;
    };
    table_.waitBegin = [](const KestHostServices*, KestText) {};
    table_.waitEnd = [](const KestHostServices*) {};
    table_.yield = [](const KestHostServices* self) { Of(self).RunTasks(); };
    services_.Attach(&table_);
  }
  SliceHost(const SliceHost&) = delete;
  SliceHost& operator=(const SliceHost&) = delete;

  HostServices& Services() { return services_; }
  AppModule& Module() { return module_; }

  // Runs `work()` as a module task; returns the nanoseconds of its longest slice.
  template <typename Work>
  double LongestSlice(const Work& work) {
    longest_ = 0;
    start_ = CpuNanoseconds();
    work();
    EndSlice();
    return longest_;
  }
  // Bytes of JSON published so far.
  size_t Published() const { return published_; }

 private:
  static SliceHost& Of(const KestHostServices* table) {
    return *const_cast<SliceHost*>(reinterpret_cast<const SliceHost*>(table));
  }
  void EndSlice() { longest_ = std::max(longest_, CpuNanoseconds() - start_); }
  // A host allocates when it changes tasks. The heap then tidies up what was freed in the slice,
  // which counts with it.
  void RunTasks() {
    Keep(std::make_unique<char[]>(kBytesOfTask).get());
    EndSlice();
    for (const auto& run : std::exchange(tasks_, {})) run();
    start_ = CpuNanoseconds();
  }

  static constexpr size_t kBytesOfTask = 4096;

  KestHostServices table_{};  // first: its address is that of the host
  EntryGate gate_;
  RuntimeCounters counters_;
  HostServices services_{gate_, counters_};
  AppModule module_{services_};
  std::vector<std::function<void()>> tasks_;
  size_t published_ = 0;
  double longest_ = 0;
  double start_ = 0;
};

}  // namespace Kest::Bench
