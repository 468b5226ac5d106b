#include "binding/tree/arena.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace Kest {
namespace {

constexpr size_t kSmallestBlock = 256;
constexpr size_t kDoublingEnd = size_t{1} << 20;

}  // namespace

Arena* Arena::Create(size_t firstBytes) {
  if (firstBytes > kMaxTreeBytes) throw TreeBoundExceeded();
  const size_t total = sizeof(Arena) + ((firstBytes + kAlignment - 1) & ~(kAlignment - 1));
  char* memory = static_cast<char*>(::operator new(total));
  auto* arena = new (memory) Arena(total);
  arena->next_ = memory + sizeof(Arena);
  arena->end_ = memory + total;
  return arena;
}

void Arena::DropOwner(Arena* arena) noexcept {
  if (arena->owners_.fetch_sub(1, std::memory_order_acq_rel) == 1) Destroy(arena);
}

void Arena::Destroy(Arena* arena) noexcept {
  Block* block = arena->last_;
  while (block != nullptr) {
    Block* previous = block->previous;
    ::operator delete(block);
    block = previous;
  }
  ::operator delete(arena);
}

void* Arena::AllocateBlock(size_t bytes) {
  static_assert(sizeof(Block) <= kAlignment);
  if (bytes > kMaxTreeBytes || bytes_ + bytes + kAlignment > kMaxTreeBytes) return nullptr;
  const size_t growth = std::max(kSmallestBlock, bytes_ < kDoublingEnd ? bytes_ : bytes_ / 4);
  const size_t total = std::min(std::max(growth, bytes + kAlignment), kMaxTreeBytes - bytes_);
  char* memory = static_cast<char*>(::operator new(total));
  last_ = new (memory) Block{last_};
  next_ = memory + kAlignment + bytes;
  end_ = memory + total;
  bytes_ += total;
  return memory + kAlignment;
}

void* Arena::Allocate(size_t bytes) {
  void* memory = TryAllocate(bytes);
  if (memory == nullptr) throw TreeBoundExceeded();
  return memory;
}

const char* Arena::TryCopy(std::string_view text) {
  if (text.empty()) return "";
  char* copy = static_cast<char*>(TryAllocate(text.size()));
  if (copy != nullptr) std::memcpy(copy, text.data(), text.size());
  return copy;
}

const char* Arena::Copy(std::string_view text) {
  const char* copy = TryCopy(text);
  if (copy == nullptr) throw TreeBoundExceeded();
  return copy;
}

void Arena::ChargeValues(size_t count) {
  if (!TryChargeValues(count)) throw TreeBoundExceeded();
}

size_t Arena::ChargeValuesUpTo(size_t count) {
  count = std::min(count, kMaxTreeValues - values_);
  values_ += count;
  return count;
}

}  // namespace Kest
