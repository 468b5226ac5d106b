// Announces to AddressSanitizer and ThreadSanitizer which stack a fiber switch leaves and enters;
// without them every call is empty. Each side of a switch calls Leave just before and Arrive just
// after it.
#pragma once

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
#define KEST_FIBER_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KEST_FIBER_ASAN 1
#endif
#endif
#if defined(__SANITIZE_THREAD__)
#define KEST_FIBER_TSAN 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define KEST_FIBER_TSAN 1
#endif
#endif

#if defined(KEST_FIBER_ASAN)
#include <sanitizer/asan_interface.h>
#include <sanitizer/common_interface_defs.h>
#endif
#if defined(KEST_FIBER_TSAN)
#include <sanitizer/tsan_interface.h>
#endif

namespace Kest::Host {

// The notes of one fiber: its own stack, and that of its caller.
class FiberSwitch {
 public:
  // `bottom` is the lowest address of the fiber's stack.
  FiberSwitch(const void* bottom, size_t size) : bottom_(bottom), size_(size) {
#if defined(KEST_FIBER_TSAN)
    fiber_ = __tsan_create_fiber(0);
#endif
  }
  ~FiberSwitch() {
#if defined(KEST_FIBER_TSAN)
    __tsan_destroy_fiber(fiber_);
#endif
#if defined(KEST_FIBER_ASAN)
    __asan_unpoison_memory_region(bottom_, size_);
#endif
  }
  FiberSwitch(const FiberSwitch&) = delete;
  FiberSwitch& operator=(const FiberSwitch&) = delete;

  void LeaveOutside() {
#if defined(KEST_FIBER_ASAN)
    __sanitizer_start_switch_fiber(&outsideFrames_, bottom_, size_);
#endif
#if defined(KEST_FIBER_TSAN)
    outside_ = __tsan_get_current_fiber();
    __tsan_switch_to_fiber(fiber_, 0);
#endif
  }
  void ArriveOutside() {
#if defined(KEST_FIBER_ASAN)
    __sanitizer_finish_switch_fiber(outsideFrames_, nullptr, nullptr);
#endif
  }
  // `forGood`: the fiber is never entered again.
  void LeaveInside([[maybe_unused]] bool forGood) {
#if defined(KEST_FIBER_ASAN)
    __sanitizer_start_switch_fiber(forGood ? nullptr : &insideFrames_, outsideBottom_,
                                   outsideSize_);
#endif
#if defined(KEST_FIBER_TSAN)
    __tsan_switch_to_fiber(outside_, 0);
#endif
  }
  void ArriveInside() {
#if defined(KEST_FIBER_ASAN)
    __sanitizer_finish_switch_fiber(insideFrames_, &outsideBottom_, &outsideSize_);
#endif
  }

 private:
  [[maybe_unused]] const void* bottom_;
  [[maybe_unused]] size_t size_;
#if defined(KEST_FIBER_ASAN)
  void* outsideFrames_ = nullptr;
  void* insideFrames_ = nullptr;
  const void* outsideBottom_ = nullptr;
  size_t outsideSize_ = 0;
#endif
#if defined(KEST_FIBER_TSAN)
  void* fiber_ = nullptr;
  void* outside_ = nullptr;
#endif
};

}  // namespace Kest::Host
