// Builds a BindingProperty tree from a stream of values.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "binding/tree/binding_property.h"
#include "binding/tree/key_table.h"
#include "binding/tree/tree_nodes.h"
#include "binding/tree/value_writer.h"

namespace Kest {

// A ValueWriter that gathers the children of each open container and stores them as exact arrays
// when it ends. Each name is stored once per tree. Fails with "Too many values." beyond the bounds
// of a tree (binding_property.h); a failed builder is thrown away.
// Threads: one.
class TreeBuilder final : public ValueWriter {
 public:
  // The size of what is read, and how many bytes of nodes each of its bytes is likely to give.
  explicit TreeBuilder(size_t textBytes = 0, size_t nodesPerByte = 1);
  // Builds a part of the tree that `arena` stores; ends with TakeBits.
  explicit TreeBuilder(Arena& arena);
  ~TreeBuilder() override;
  TreeBuilder(const TreeBuilder&) = delete;
  TreeBuilder& operator=(const TreeBuilder&) = delete;

  bool Null() override { return Add({}); }
  bool Bool(bool value) override { return Add(TreeNodes::Bool(value)); }
  bool Signed(int64_t value) override { return Add(TreeNodes::Signed(value)); }
  bool Unsigned(uint64_t value) override { return Add(TreeNodes::Unsigned(value)); }
  bool Float(double value) override { return Add(TreeNodes::Float(value)); }
  bool String(std::string_view text) override;
  bool Blob(std::span<const uint8_t> bytes) override;
  bool Enum(const TypeRecord& type, int32_t value) override {
    return Add(TreeNodes::Enum(type, value));
  }
  bool BeginStructure(size_t) override { return Begin(/*isStructure=*/true); }
  bool Member(std::string_view name) override { return SetKey(name, KeyTable::Form::kBorrowed); }
  bool EndStructure() override;
  bool BeginCollection(size_t) override { return Begin(/*isStructure=*/false); }
  bool EndCollection() override;
  std::string_view ErrorMessage() const override;

  // Memory of the tree for text and bytes that shall not be copied; null past the bound.
  char* TryReserveText(size_t bytes) { return static_cast<char*>(arena_->TryAllocate(bytes)); }
  // For text and bytes inside such memory.
  bool StoredString(std::string_view text) {
    return Add(TreeNodes::Text(BindingKind::kString, text));
  }
  bool StoredBlob(std::span<const uint8_t> bytes) {
    return Add(TreeNodes::Text(BindingKind::kBlob,
                               {reinterpret_cast<const char*>(bytes.data()), bytes.size()}));
  }
  bool StoredMember(std::string_view name) { return SetKey(name, KeyTable::Form::kStored); }

  // For readers of text that has the same names again and again: the size of the name that is
  // expected next if `text` begins with it, else 0; ExpectedMember takes it. Only names of
  // VerbatimMember are expected, which is StoredMember of the very characters of the text.
  size_t SizeOfExpectedMember(std::string_view text) const { return keys_.SizeOfExpected(text); }
  void ExpectedMember() { key_ = keys_.TakeExpected(); }
  bool VerbatimMember(std::string_view name) { return SetKey(name, KeyTable::Form::kVerbatim); }

  // Whether all that was begun has ended, and else, whether the innermost is a structure.
  bool IsComplete() const { return open_ == nullptr; }
  bool IsInStructure() const { return open_->shape != 0; }

  // The value that was finished last. REQUIRES: nothing was begun or ended since.
  TreeNodes::Bits LastValue() const { return next_[-1].Bits(); }
  // Adds a copy of a finished value, which holds so many values (tree_copy.h).
  bool Repeat(TreeNodes::Bits value, size_t values);

  // The finished tree. REQUIRES: exactly one whole value was written, and no call failed.
  BindingProperty Take();
  TreeNodes::Bits TakeBits();

 private:
  // A value that is not in its container yet. One that has begun holds, until it ends, 1 + the
  // index of the one around it or 0, and whether it is a structure.
  struct Child {
    uint64_t payload;
    uint64_t shape;
    KeyTable::Entry* key;  // the name; of an element: any

    TreeNodes::Bits Bits() const { return {payload, shape}; }
  };

  bool Add(TreeNodes::Bits bits) {
    if (next_ == limit_ && !TryGrow()) return false;
    *next_++ = {bits.payload, bits.shape, key_};
    return true;
  }
  bool TryGrow();
  bool Begin(bool isStructure) {
    const size_t around = open_ != nullptr ? static_cast<size_t>(open_ - children_.get()) + 1 : 0;
    if (!Add({around, isStructure})) return false;
    open_ = next_ - 1;
    keys_.MoveCursor(*key_, KeyTable::kOnEntry);
    return true;
  }
  void End(TreeNodes::Bits bits);
  bool SetKey(std::string_view name, KeyTable::Form form) {
    key_ = keys_.TryIntern(name, form, *arena_);
    return key_ != nullptr;
  }
  bool PlaceMembers(MemberNode* members, const Child* children, size_t count);
  size_t MergeRepeatedMembers(Child* children, size_t count);

  Arena* arena_;
  bool ownsArena_;
  KeyTable keys_;
  KeyTable::Entry* key_ = keys_.Root();  // the name of the next value
  std::unique_ptr<Child[]> children_;
  size_t capacity_ = 0;
  Child* next_ = nullptr;   // past the last child
  Child* limit_ = nullptr;  // so many of them are charged to the arena
  Child* open_ = nullptr;   // the innermost container
};

}  // namespace Kest
