// Loading the library, the handshake and the start, as a host sees them: from the path of the file
// until start has returned. The host has no other plugins: every resource it is asked for is
// missing.
#include <dlfcn.h>

#include <deque>
#include <functional>
#include <string>

#include "bench/allocation_counter.h"
#include "bench/comparison.h"
#include "plugin/host_interface.h"

namespace Kest::Bench {
namespace {

class Host {
 public:
  const KestHostServices* Services() const { return &services_; }
  void RunNext() {
    if (work_.empty()) return;
    const std::function<void()> next = std::move(work_.front());
    work_.pop_front();
    next();
  }

 private:
  static Host& Of(const KestHostServices* self) {
    return *reinterpret_cast<Host*>(const_cast<KestHostServices*>(self));
  }
  static bool Request(const KestHostServices* self, const KestRequest*, KestCompletion completion,
                      void* context) {
    Of(self).work_.emplace_back([completion, context] {
      KestResponse response = {};
      response.status = 404;
      completion(context, &response);
    });
    return true;
  }
  static int32_t PostTask(const KestHostServices* self, KestText, KestTask run, void* context) {
    Of(self).work_.emplace_back([run, context] { run(context); });
    return KEST_TASK_QUEUED;
  }

  // First: a `self` pointer is a pointer to the host.
  const KestHostServices services_ = {
      .size = sizeof(KestHostServices),
      .request = Request,
      .subscribe = [](const KestHostServices*, KestText, KestDelivery, void*) { return true; },
      .unsubscribe = [](const KestHostServices*, KestText) {},
      .publish = [](const KestHostServices*, KestText, int32_t, KestBytes) { return true; },
      .postTask = PostTask,
      .waitBegin = [](const KestHostServices*, KestText) {},
      .waitEnd = [](const KestHostServices*) {},
      .yield = [](const KestHostServices* self) { Of(self).RunNext(); },
      .log = [](const KestHostServices*, int32_t, KestText) {},
      .telemetry = [](const KestHostServices*, KestText, KestBytes) {},
      .identify = [](const KestHostServices*, KestText, KestText) {},
      .now = nullptr,
      .createUuid = nullptr,
      .cause = nullptr,
      .setCause = nullptr};
  std::deque<std::function<void()>> work_;
};

// Returns the nanoseconds from load to start; stopping and unloading do not count.
double LoadAndStart(Allocated* allocated) {
  Host host;
  KestHandshakeBlock block = {18, 0, 0, nullptr, nullptr, nullptr, nullptr};
  StartCounting();
  const double start = CpuNanoseconds();
  void* const library = dlopen(KEST_LIBRARY, RTLD_NOW | RTLD_LOCAL);
  Require(library != nullptr, "the library does not load");
  reinterpret_cast<KestLoadFunction>(dlsym(library, "load_tav_loot"))(&block);
  const bool isStarted = block.callbacks->start(block.context, host.Services());
  const double nanoseconds = CpuNanoseconds() - start;
  *allocated = StopCounting();
  Require(isStarted, "the library does not start");
  block.callbacks->stop(block.context);
  Require(dlclose(library) == 0 && dlopen(KEST_LIBRARY, RTLD_NOW | RTLD_NOLOAD) == nullptr,
          "the library stays loaded");
  return nanoseconds;
}

}  // namespace

void AddRows(Table& table) {
  Allocated allocated;
  table.Time("load, handshake and start of the library",
             Side::Measured([&] { return LoadAndStart(&allocated); }), 3e6);
  table.Value("load, handshake and start: allocations", static_cast<double>(allocated.count), "",
              400);
}

}  // namespace Kest::Bench
