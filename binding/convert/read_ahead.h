// Structures in a container lie all over the memory, and their texts again elsewhere. A walk that
// asks for what it comes to next does not wait for it.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>

#include "binding/convert/native_type.h"
#include "binding/types/type_record.h"

namespace Kest {

namespace Native {

inline void FetchMemory(const void* at, size_t size) {
  constexpr size_t kCacheLine = 64;
  for (size_t i = 0; i < size; i += kCacheLine) {
    __builtin_prefetch(static_cast<const char*>(at) + i);
  }
}

inline void FetchTexts(const void* object, const TypeRecord& type) {
  for (const FieldRecord& field : type.fields) {
    if (field.storedAs != TypeId::kString) continue;
    const void* const member = static_cast<const char*>(object) + field.offset;
    __builtin_prefetch(static_cast<const std::string*>(member)->data());
  }
}

// The structure that an entry of a vector or map is or points to.
template <typename T>
const void* StructureOf(const T& entry) {
  return &entry;
}
template <typename T>
const void* StructureOf(const std::shared_ptr<const T>& entry) {
  return entry.get();
}
template <typename Key, typename T>
const void* StructureOf(const std::pair<const Key, T>& entry) {
  return StructureOf(entry.second);
}

// Lifetime: borrows the container, which does not change meanwhile.
template <typename Items>
class ReadAhead {
  static constexpr bool kHoldsStructures = BoundStruct<typename ElementOf<Items>::Type>;

 public:
  // `type` is that of the entries; null: they are not registered.
  ReadAhead(const Items& items, const TypeRecord* type)
      : end_(items.end()), type_(type), third_(items.begin()) {
    Advance(third_);
    second_ = first_ = items.begin();
    Advance(second_);
    Advance(third_);
  }

  // Call it once before each entry is read.
  void Step() {
    if constexpr (kHoldsStructures) {
      if (type_ == nullptr) return;
      if (Advance(third_)) FetchMemory(&*third_, sizeof(*third_));
      const void* const second = Advance(second_) ? StructureOf(*second_) : nullptr;
      if (second != nullptr) FetchMemory(second, type_->size);
      const void* const first = Advance(first_) ? StructureOf(*first_) : nullptr;
      if (first != nullptr) FetchTexts(first, *type_);
    }
  }

 private:
  using Iterator = typename Items::const_iterator;

  bool Advance(Iterator& at) const { return at != end_ && ++at != end_; }

  const Iterator end_;
  const TypeRecord* const type_;
  Iterator first_;  // the entry after the one that is read, and those after it
  Iterator second_;
  Iterator third_;
};

}  // namespace Native

}  // namespace Kest
