#include "bench/allocation_counter.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace Kest::Bench {
namespace {

constinit std::atomic<bool> isCounting = false;
constinit std::atomic<uint64_t> count = 0;
constinit std::atomic<uint64_t> bytes = 0;

void* Allocate(size_t size, size_t alignment) {
  if (isCounting.load(std::memory_order_relaxed)) {
    count.fetch_add(1, std::memory_order_relaxed);
    bytes.fetch_add(size, std::memory_order_relaxed);
  }
  if (size == 0) size = 1;
  // aligned_alloc wants whole multiples of the alignment.
  void* memory =
      alignment <= alignof(std::max_align_t)
          ? std::malloc(size)
          : std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

void StartCounting() {
  count = 0;
  bytes = 0;
  isCounting = true;
}

Allocated StopCounting() {
  isCounting = false;
  return {count, bytes};
}

}  // namespace Kest::Bench

// The other forms of new and delete call these.
void* operator new(size_t size) {
  return Kest::Bench::Allocate(size, 1);
}
void* operator new(size_t size, std::align_val_t alignment) {
  return Kest::Bench::Allocate(size, static_cast<size_t>(alignment));
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, size_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, size_t, std::align_val_t) noexcept {
  std::free(memory);
}
