// The storage of one tree.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "binding/tree/binding_property.h"

namespace Kest {

// Hands out memory that lives until the whole arena goes; nothing is freed before. Blocks double in
// size up to 1 MiB in all, then grow by a quarter, so a tree costs few allocations and little
// slack. It charges every byte and every value ever made and stops at kMaxTreeBytes and
// kMaxTreeValues. It goes with its last owner: the tree's root, or a part that was moved out.
// Threads: one writer; owners come and go on any thread.
class alignas(8) Arena {
 public:
  // `firstBytes` fit the first block. The caller is the first owner.
  static Arena* Create(size_t firstBytes);
  void AddOwner() noexcept { owners_.fetch_add(1, std::memory_order_relaxed); }
  static void DropOwner(Arena* arena) noexcept;
  Arena(const Arena&) = delete;
  Arena& operator=(const Arena&) = delete;

  // Memory for any object of the tree. TryAllocate returns null past the bound, Allocate
  // throws TreeBoundExceeded; both throw std::bad_alloc when the system has no memory.
  void* TryAllocate(size_t bytes) {
    bytes = (bytes + kAlignment - 1) & ~(kAlignment - 1);
    if (bytes > static_cast<size_t>(end_ - next_)) return AllocateBlock(bytes);
    char* memory = next_;
    next_ += bytes;
    return memory;
  }
  void* Allocate(size_t bytes);
  // Null past the bound. An empty string needs no memory, but its copy is never null.
  const char* TryCopy(std::string_view text);
  const char* Copy(std::string_view text);

  // Charges `count` values that are made; false, or TreeBoundExceeded, past the bound.
  bool TryChargeValues(size_t count) {
    if (count > kMaxTreeValues - values_) return false;
    values_ += count;
    return true;
  }
  void ChargeValues(size_t count);
  // Charges up to `count` values that shall be made, as many as the bound allows; returns how many.
  size_t ChargeValuesUpTo(size_t count);
  void RefundValues(size_t count) { values_ -= count; }

  // Charges memory elsewhere that building the tree takes; false past the bound.
  bool TryCharge(size_t bytes) {
    if (bytes > kMaxTreeBytes - bytes_) return false;
    bytes_ += bytes;
    return true;
  }
  void Refund(size_t bytes) { bytes_ -= bytes; }

 private:
  static constexpr size_t kAlignment = 8;
  struct Block {
    Block* previous;
  };

  explicit Arena(size_t bytes) : bytes_(bytes) {}
  void* AllocateBlock(size_t bytes);
  static void Destroy(Arena* arena) noexcept;

  char* next_ = nullptr;
  char* end_ = nullptr;
  Block* last_ = nullptr;  // the newest block after the first, which holds the arena itself
  size_t bytes_;           // of all blocks, and charged
  size_t values_ = 0;
  std::atomic<size_t> owners_ = 1;
};

}  // namespace Kest
