#include "bench/allocation_counter.h"

#include <malloc.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace Kest::Bench {
namespace {

constinit std::atomic<bool> isCounting = false;
constinit std::atomic<uint64_t> count = 0;
constinit std::atomic<uint64_t> bytes = 0;

#if defined(_WIN32)
void* AllocateAligned(size_t size, size_t alignment) {
  return _aligned_malloc(size, alignment);
}
void FreeAligned(void* memory) {
  _aligned_free(memory);
}
#else
void* AllocateAligned(size_t size, size_t alignment) {
  // aligned_alloc wants whole multiples of the alignment.
  return std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
}
void FreeAligned(void* memory) {
  std::free(memory);
}
#endif

template <typename Allocate>
void* Counted(size_t size, Allocate allocate) {
  if (isCounting.load(std::memory_order_relaxed)) {
    count.fetch_add(1, std::memory_order_relaxed);
    bytes.fetch_add(size, std::memory_order_relaxed);
  }
  void* const memory = allocate(size == 0 ? 1 : size);
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

size_t LiveBytes() {
#if defined(_WIN32)
  size_t live = 0;
  _HEAPINFO block = {};
  while (_heapwalk(&block) == _HEAPOK) live += block._useflag == _USEDENTRY ? block._size : 0;
  return live;
#else
  return mallinfo2().uordblks + mallinfo2().hblkhd;
#endif
}

}  // namespace Kest::Bench

// The other forms of new and delete call these.
void* operator new(size_t size) {
  return Kest::Bench::Counted(size, [](size_t bytes) { return std::malloc(bytes); });
}
void* operator new(size_t size, std::align_val_t alignment) {
  return Kest::Bench::Counted(size, [alignment](size_t bytes) {
    return Kest::Bench::AllocateAligned(bytes, static_cast<size_t>(alignment));
  });
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, size_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
  Kest::Bench::FreeAligned(memory);
}
void operator delete(void* memory, size_t, std::align_val_t) noexcept {
  Kest::Bench::FreeAligned(memory);
}
