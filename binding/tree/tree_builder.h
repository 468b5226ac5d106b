// Builds a BindingProperty tree from a stream of values.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

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
  bool Member(std::string_view name) override { return SetKey(name, /*isStored=*/false); }
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
  bool StoredMember(std::string_view name) { return SetKey(name, /*isStored=*/true); }

  // The name of the last member that came where one is due now, which is likely to come again;
  // empty when there is none. MemberAsExpected is as Member with it.
  std::string_view ExpectedMember() const { return keys_.Expected(); }
  void MemberAsExpected() { key_ = keys_.TakeExpected(); }

  // Whether all that was begun has ended, and else, what the innermost container is.
  bool IsComplete() const { return open_.empty(); }
  bool IsInStructure() const { return open_.back().isStructure; }

  // The value that was finished last. REQUIRES: nothing was begun or ended since.
  TreeNodes::Bits LastValue() const { return children_.back().bits; }
  // Adds a copy of a finished value, which holds so many values (tree_copy.h).
  bool Repeat(TreeNodes::Bits value, size_t values);

  // The finished tree. REQUIRES: exactly one whole value was written, and no call failed.
  BindingProperty Take();
  TreeNodes::Bits TakeBits();

 private:
  struct Child {
    Child() = default;
    Child(TreeNodes::Bits childBits, uint32_t childKey) : bits(childBits), key(childKey) {}
    TreeNodes::Bits bits;
    uint32_t key = 0;  // in keys_; of an element: any
  };
  struct Container {
    Container(size_t firstChild, uint32_t ownKey, bool structure)
        : first(static_cast<uint32_t>(firstChild)), key(ownKey), isStructure(structure) {}
    uint32_t first;  // of its children in children_; kMaxTreeValues bounds them
    uint32_t key;    // its own name
    bool isStructure;
  };

  bool Add(TreeNodes::Bits bits) {
    if (!arena_->TryChargeValues(1)) return false;
    children_.emplace_back(bits, key_);
    return true;
  }
  bool Begin(bool isStructure);
  void End(TreeNodes::Bits bits);
  bool SetKey(std::string_view name, bool isStored) {
    return keys_.TryIntern(name, isStored, *arena_, &key_);
  }
  size_t MergeRepeatedMembers(size_t first);

  Arena* arena_;
  bool ownsArena_;
  uint32_t key_ = 0;  // the name of the next value
  std::vector<Child> children_;
  std::vector<Container> open_;
  KeyTable keys_;
};

}  // namespace Kest
