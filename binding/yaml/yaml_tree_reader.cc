#include "binding/yaml/yaml_tree_reader.h"

#include <cstring>

#include "binding/tree/tree_copy.h"
#include "binding/yaml/yaml_adapter.h"
#include "binding/yaml/yaml_messages.h"
#include "binding/yaml/yaml_scalar.h"
#include "log/positional_format.h"

namespace Kest {
namespace {

// Names come from libyaml as bytes ended by a zero.
std::string_view View(const unsigned char* name) {
  return reinterpret_cast<const char*>(name);
}

}  // namespace

YamlTreeReader::YamlTreeReader(ConversionContext& context, TreeBuilder& builder)
    : context_(context), builder_(builder), open_{{Due::kElement, nullptr}} {
  open_.reserve(kMaxYamlDepth + 1);
}

void YamlTreeReader::Take(const yaml_event_t& event) {
  if (event.type == YAML_SCALAR_EVENT) return TakeScalar(event);
  const yaml_mark_t& mark = event.start_mark;
  switch (event.type) {
    case YAML_DOCUMENT_START_EVENT:
      return BeginDocument();
    case YAML_ALIAS_EVENT:
      return TakeAlias(View(event.data.alias.anchor), mark);
    case YAML_SEQUENCE_START_EVENT:
      return Begin(Due::kElement, event.data.sequence_start.anchor, event.data.sequence_start.tag,
                   mark);
    case YAML_SEQUENCE_END_EVENT:
      return End(builder_.EndCollection(), mark);
    case YAML_MAPPING_START_EVENT:
      return Begin(Due::kKey, event.data.mapping_start.anchor, event.data.mapping_start.tag, mark);
    case YAML_MAPPING_END_EVENT:
      return End(builder_.EndStructure(), mark);
    default:  // beginnings and ends that say nothing about values
      return;
  }
}

void YamlTreeReader::BeginDocument() {
  if (hasDocument_) return context_.Fail(kYamlMultiDocument);
  hasDocument_ = true;
}

void YamlTreeReader::Begin(Due due, const unsigned char* anchorName, const unsigned char* tag,
                           const yaml_mark_t& mark) {
  const bool isSequence = due == Due::kElement;
  if (open_.back().due == Due::kKey) {
    return FailAt(isSequence ? kYamlSequenceKey : kYamlMappingKey, mark);
  }
  if (Depth() == kMaxYamlDepth) return FailAt(kYamlTooDeep, mark);
  // A directive may give thousands of short tags half a text each.
  if (tag != nullptr) tagBytes_ += View(tag).size();
  if (tagBytes_ > kMaxYamlTagBytes) return context_.Fail(kYamlTooLarge);
  Anchor* anchor = nullptr;
  if (anchorName != nullptr && !Remember(anchorName, mark, &anchor)) return;
  const bool isDone = isSequence ? builder_.BeginCollection(0) : builder_.BeginStructure(0);
  if (!isDone) return FailAt(kYamlTooManyValues, mark);
  open_.push_back({due, anchor});
}

void YamlTreeReader::End(bool isDone, const yaml_mark_t& mark) {
  Anchor* anchor = open_.back().anchor;
  open_.pop_back();
  Finish(isDone, anchor, mark);
}

void YamlTreeReader::TakeScalar(const yaml_event_t& event) {
  const auto& data = event.data.scalar;
  const yaml_mark_t& mark = event.start_mark;
  Anchor* anchor = nullptr;
  if (data.anchor != nullptr && !Remember(data.anchor, mark, &anchor)) return;
  // One by one: loaded as pairs they would wait for libyaml's single stores.
  const std::string_view text(reinterpret_cast<const char*>(data.value), data.length);
  const auto* tag = reinterpret_cast<const char*>(data.tag);
  const bool isPlain = data.style == YAML_PLAIN_SCALAR_STYLE;
  if (open_.back().due != Due::kKey) {
    return Finish(AddYamlScalar(context_, text, tag, isPlain, builder_), anchor, mark);
  }
  if (!IsYamlKey(text, tag, isPlain)) return FailAt(kYamlInvalidKey, mark);
  if (!AddKey(text, anchor)) return FailAt(kYamlTooManyValues, mark);
  open_.back().due = Due::kValue;
}

// The name of an anchored key is kept where its aliases find it.
bool YamlTreeReader::AddKey(std::string_view name, Anchor* anchor) {
  if (anchor == nullptr) return builder_.Member(name);
  char* copy = builder_.TryReserveText(name.size());
  if (copy == nullptr) return false;
  std::memcpy(copy, name.data(), name.size());
  anchor->value = TreeNodes::Text(BindingKind::kString, {copy, name.size()});
  return builder_.StoredMember({copy, name.size()});
}

// An alias counts with its whole depth: otherwise anchors inside of anchors would nest without
// bound.
void YamlTreeReader::TakeAlias(std::string_view name, const yaml_mark_t& mark) {
  if (open_.back().due == Due::kKey) return FailAt(kYamlInvalidKey, mark);
  const auto found = anchors_.find(name);
  if (found == anchors_.end()) return FailAt(kYamlUndefinedAlias, name, mark);
  const std::optional<TreeNodes::Bits>& value = found->second.value;
  if (!value) return FailAt(kYamlCyclicAlias, name, mark);
  const TreeExtent extent = MeasureTree(*value);
  if (Depth() + extent.depth > kMaxYamlDepth) return FailAt(kYamlTooDeep, mark);
  Finish(builder_.Repeat(*value, extent.values), nullptr, mark);
}

// Sets `*anchor` for a node that has one. False: the name is taken.
bool YamlTreeReader::Remember(const unsigned char* anchorName, const yaml_mark_t& mark,
                              Anchor** anchor) {
  const auto [entry, isNew] = anchors_.try_emplace(std::string(View(anchorName)));
  if (!isNew) FailAt(kYamlDuplicateAnchor, entry->first, mark);
  *anchor = &entry->second;
  return isNew;
}

// Notes a whole value; without `isDone`, why there is none.
void YamlTreeReader::Finish(bool isDone, Anchor* anchor, const yaml_mark_t& mark) {
  if (!isDone) return FailAt(kYamlTooManyValues, mark);
  if (anchor != nullptr) anchor->value = builder_.LastValue();
  if (open_.back().due == Due::kValue) open_.back().due = Due::kKey;
}

void YamlTreeReader::FailAt(std::string_view text, const yaml_mark_t& mark) {
  context_.Fail(Format(text, mark.line, mark.column));
}

void YamlTreeReader::FailAt(std::string_view text, std::string_view name, const yaml_mark_t& mark) {
  context_.Fail(Format(text, name, mark.line, mark.column));
}

}  // namespace Kest
