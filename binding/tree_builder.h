// Builds a BindingProperty tree from a stream of values.
#pragma once

#include <memory>
#include <string_view>

#include "binding/binding_property.h"
#include "binding/value_writer.h"

namespace Kest {

// A ValueWriter that gathers the children of each open container and stores them as exact arrays
// when it ends. Names are stored once per tree. Fails with "Too many values." beyond the bounds of
// a tree (binding_property.h); a failed builder is thrown away. Threads: one.
class TreeBuilder final : public ValueWriter {
 public:
  // `expectedBytes` sizes the first block of the tree's storage.
  explicit TreeBuilder(size_t expectedBytes = 0);
  ~TreeBuilder() override;
  TreeBuilder(const TreeBuilder&) = delete;
  TreeBuilder& operator=(const TreeBuilder&) = delete;

  bool Null() override;
  bool Bool(bool value) override;
  bool Signed(int64_t value) override;
  bool Unsigned(uint64_t value) override;
  bool Float(double value) override;
  bool String(std::string_view text) override;
  bool Blob(std::span<const uint8_t> bytes) override;
  bool Enum(const TypeRecord& type, int32_t value) override;
  bool BeginStructure(size_t size) override;
  bool Member(std::string_view name) override;
  bool EndStructure() override;
  bool BeginCollection(size_t size) override;
  bool EndCollection() override;
  std::string_view ErrorText() const override;

  // The finished tree. REQUIRES: exactly one whole value was written, and no call failed.
  BindingProperty Take();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace Kest
