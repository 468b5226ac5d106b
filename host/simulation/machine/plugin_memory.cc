#include "host/simulation/machine/plugin_memory.h"

#include <cstdlib>
#include <new>

namespace Kest::Host {
namespace {

// In front of each block, as far as the block's alignment asks for.
struct BlockHead {
  void* start;
  bool isPlugins;
};
constexpr size_t kHeadBytes = 16;
static_assert(sizeof(BlockHead) <= kHeadBytes);

constinit thread_local RunningCode::Of running = RunningCode::Of::kHost;
constinit uint64_t allocations = 0;
constinit uint64_t failAt = 0;  // as a number of allocations; 0: none
constinit size_t largest = 0;
constinit bool failed = false;
constinit int64_t liveBlocks = 0;

bool Refuses(size_t size) {
  ++allocations;
  const bool refuses = allocations == failAt || (largest != 0 && size > largest);
  failed |= refuses;
  return refuses;
}

void* Allocate(size_t size, size_t alignment) noexcept {
  const bool isPlugins = running == RunningCode::Of::kPlugin;
  if (isPlugins && Refuses(size)) return nullptr;
  const size_t lead = alignment > kHeadBytes ? alignment + kHeadBytes : kHeadBytes;
  if (size > SIZE_MAX - lead) return nullptr;
  auto* const start = static_cast<unsigned char*>(std::malloc(size + lead));
  if (start == nullptr) return nullptr;
  unsigned char* block = start + kHeadBytes;
  if (alignment > kHeadBytes) {
    const auto address = reinterpret_cast<uintptr_t>(block);
    block += (alignment - address % alignment) % alignment;
  }
  new (block - kHeadBytes) BlockHead{start, isPlugins};
  if (isPlugins) ++liveBlocks;
  return block;
}

void* AllocateOrThrow(size_t size, size_t alignment) {
  if (void* const block = Allocate(size, alignment)) return block;
  throw std::bad_alloc();
}

void Free(void* block) noexcept {
  if (block == nullptr) return;
  const auto* const head =
      reinterpret_cast<const BlockHead*>(static_cast<unsigned char*>(block) - kHeadBytes);
  if (head->isPlugins) --liveBlocks;
  std::free(head->start);
}

}  // namespace

RunningCode::RunningCode(Of code) : before_(running) {
  running = code;
}
RunningCode::~RunningCode() {
  running = before_;
}

void PluginMemory::FailAt(uint64_t nth) {
  failAt = nth == 0 ? 0 : allocations + nth;
}
void PluginMemory::RefuseAbove(size_t bytes) {
  largest = bytes;
}
bool PluginMemory::HasFailed() {
  return failed;
}
uint64_t PluginMemory::Allocations() {
  return allocations;
}
int64_t PluginMemory::LiveBlocks() {
  return liveBlocks;
}

}  // namespace Kest::Host

// The forms for arrays call these. Those that do not throw would, too, but a sanitizer brings its
// own.
void* operator new(size_t size, const std::nothrow_t&) noexcept {
  return Kest::Host::Allocate(size, 1);
}
void* operator new(size_t size) {
  return Kest::Host::AllocateOrThrow(size, 1);
}
void* operator new(size_t size, std::align_val_t alignment) {
  return Kest::Host::AllocateOrThrow(size, static_cast<size_t>(alignment));
}
void operator delete(void* block) noexcept {
  Kest::Host::Free(block);
}
void operator delete(void* block, size_t) noexcept {
  Kest::Host::Free(block);
}
void operator delete(void* block, std::align_val_t) noexcept {
  Kest::Host::Free(block);
}
void operator delete(void* block, size_t, std::align_val_t) noexcept {
  Kest::Host::Free(block);
}
