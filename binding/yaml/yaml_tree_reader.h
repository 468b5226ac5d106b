// From the events of a YAML text to a tree.
#pragma once

#include <yaml.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "binding/convert/conversion_context.h"
#include "binding/tree/seeded_hash.h"
#include "binding/tree/tree_builder.h"

namespace Kest {

// Feeds a TreeBuilder and keeps what events say no more: which containers are open, whether a key
// or a value is due, and what each anchor stands for. Failures name the start of their event.
// Threads: one. Lifetime: borrows context and builder.
class YamlTreeReader {
 public:
  YamlTreeReader(ConversionContext& context, TreeBuilder& builder);

  // REQUIRES: `context` has not failed.
  void Take(const yaml_event_t& event);

  // Whether the text held a document; the builder is empty otherwise.
  bool HasDocument() const { return hasDocument_; }

 private:
  // What the next event of a container is. The text as a whole counts as one that takes elements.
  enum class Due : uint8_t { kElement, kKey, kValue };
  struct Anchor {
    std::optional<TreeNodes::Bits> value;  // none while the node is open
  };
  struct Container {
    Due due;
    Anchor* anchor;  // its own, if it has one
  };
  struct HashName {
    using is_transparent = void;
    size_t operator()(std::string_view name) const { return SeededHash(name); }
  };

  void BeginDocument();
  void Begin(Due due, const unsigned char* anchorName, const unsigned char* tag,
             const yaml_mark_t& mark);
  void End(bool isDone, const yaml_mark_t& mark);
  void TakeScalar(const yaml_event_t& event);
  void TakeAlias(std::string_view name, const yaml_mark_t& mark);
  bool AddKey(std::string_view name, Anchor* anchor);
  bool Remember(const unsigned char* anchorName, const yaml_mark_t& mark, Anchor** anchor);
  void Finish(bool isDone, Anchor* anchor, const yaml_mark_t& mark);
  void FailAt(std::string_view text, const yaml_mark_t& mark);
  void FailAt(std::string_view text, std::string_view name, const yaml_mark_t& mark);
  size_t Depth() const { return open_.size() - 1; }

  ConversionContext& context_;
  TreeBuilder& builder_;
  bool hasDocument_ = false;
  size_t tagBytes_ = 0;  // of the containers so far
  std::vector<Container> open_;
  std::unordered_map<std::string, Anchor, HashName, std::equal_to<>> anchors_;
};

}  // namespace Kest
