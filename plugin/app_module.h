// AppModule is the plugin's view of the host's cooperative scheduler: waiting without blocking,
// posting work, and the time.
// Threads: PostTask on any thread, everything else on module tasks only.
#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <string>
#include <string_view>
#include <utility>

#include "base/maybe_type.h"
#include "binding/types/static_type.h"
#include "plugin/host_services.h"

namespace Kest {

class AppModule {
 public:
  explicit AppModule(HostServices& host) : host_(host) {}

  // Waits until the future holds its value and returns it. Other tasks run meanwhile, so hold no
  // lock and no reference into shared state across this call. A future that cannot give a value
  // (empty, or its promise broken) ends the process with "ALE-6D828C10"; those of OncePromise never
  // do. A deferred future is run by the wait itself.
  template <class F, class T>
  MaybeType<F, T> Await(std::future<MaybeType<F, T>> future) {
    return Await(std::move(future), StaticType::Name<MaybeType<F, T>>(), [] {});
  }

  // The same, shown as a wait for `typeName`. `poll` runs before each look at the future.
  template <class F, class T, class Poll>
  MaybeType<F, T> Await(std::future<MaybeType<F, T>> future, std::string_view typeName,
                        const Poll& poll) {
    try {
      if (!future.valid()) throw std::future_error(std::future_errc::no_state);
      const auto isReady = [&] {
        poll();
        return future.wait_for(std::chrono::seconds(0)) != std::future_status::timeout;
      };
      WaitUntil(isReady, typeName);
      return future.get();
    } catch (const std::future_error& error) {
      EndProcess(error);
    }
  }

  // Lets run what is due: the tasks that were queued before, and other tasks that wait. False: the
  // plugin stops. When memory runs out it returns at once. `name` is that of the task that ends the
  // pause; of several pauses of one name at a time only the first lasts.
  [[nodiscard]] bool LetOthersRun(std::string_view name) noexcept;

  TaskPosting PostTask(std::string_view name, std::function<void()> run) {
    return host_.PostTask(name, std::move(run));
  }

  // The host's time in seconds since 1970.
  int64_t NowSeconds() const { return host_.NowSeconds(); }
  // Fills `*uuid` with a fresh unique id. False: there is none.
  [[nodiscard]] bool CreateUuid(UuidBytes* uuid) { return host_.CreateUuid(uuid); }

 private:
  // Polls and yields. The wait is announced once, and only when the first poll fails. A request
  // under way must not lose its caller, so the wait goes on when there is no memory for its label.
  void WaitUntil(const std::function<bool()>& isReady, std::string_view typeName);
  [[noreturn]] static void EndProcess(const std::future_error& error);

  HostServices& host_;
};

}  // namespace Kest
