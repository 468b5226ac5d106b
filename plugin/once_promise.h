// OncePromise is a promise that is always kept: set once, and "Finalizing" when its last holder
// goes without having set it. A wait on its future therefore never sees a broken promise. Hold it
// by shared_ptr in completion callbacks.
// Threads: any may set; the first one wins.
#pragma once

#include <atomic>
#include <future>
#include <string_view>
#include <utility>

#include "base/maybe_type.h"

namespace Kest {

// The failure of everything that the plugin's end cuts short.
inline constexpr std::string_view kFinalizing = "Finalizing";

template <class T>
class OncePromise {
 public:
  OncePromise() = default;
  ~OncePromise() { Set(Failure{std::string(kFinalizing)}); }
  OncePromise(const OncePromise&) = delete;
  OncePromise& operator=(const OncePromise&) = delete;

  // REQUIRES: not called before.
  std::future<Maybe<T>> GetFuture() { return promise_.get_future(); }

  // False: a value was set before, and remains.
  bool Set(Maybe<T> value) {
    if (set_.exchange(true)) return false;
    promise_.set_value(std::move(value));
    return true;
  }

 private:
  std::promise<Maybe<T>> promise_;
  std::atomic<bool> set_{false};
};

}  // namespace Kest
