#include "fuzz/described_tree.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>

#include "binding/tree/value_writer.h"
#include "binding/types/type_record.h"

namespace Kest::Fuzz {
namespace {

constexpr int64_t kMaxFixint = 127;

// Bytes of the UTF-8 character at text[at], 0 when there is none. Decodes and measures the number
// instead of looking at byte ranges, to be another way than that of the code under test.
size_t CharacterSize(std::string_view text, size_t at) {
  const auto first = static_cast<uint8_t>(text[at]);
  const size_t size = first < 0x80 ? 1 : first >> 5 == 6 ? 2 : first >> 4 == 14 ? 3 : 4;
  if (size == 1) return 1;
  if (size == 4 && first >> 3 != 30) return 0;
  if (at + size > text.size()) return 0;
  uint32_t number = first & (0xFFu >> (size + 1));
  for (size_t i = 1; i < size; ++i) {
    const auto next = static_cast<uint8_t>(text[at + i]);
    if (next >> 6 != 2) return 0;
    number = number << 6 | (next & 0x3Fu);
  }
  constexpr uint32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = number >= 0xD800 && number <= 0xDFFF;
  return number >= kSmallest[size] && number <= 0x10FFFF && !isSurrogate ? size : 0;
}

class TreeDescriber final : public ValueWriter {
 public:
  explicit TreeDescriber(TreeView view) : view_(view) {}

  TreeDescription description;

  bool Null() override { return Say("null"); }
  bool Bool(bool value) override { return Say(value ? "true" : "false"); }
  bool Signed(int64_t value) override {
    if (view_ == TreeView::kJson && value >= 0) return Unsigned(static_cast<uint64_t>(value));
    return Say("i" + std::to_string(value));
  }
  bool Unsigned(uint64_t value) override {
    if (view_ == TreeView::kMessagePack && value <= kMaxFixint) {
      return Signed(static_cast<int64_t>(value));
    }
    return Say("u" + std::to_string(value));
  }
  bool Float(double value) override {
    if (view_ == TreeView::kJson && !std::isfinite(value)) {
      description.failure = "A number that is not finite cannot be written as JSON.";
      return false;
    }
    if (std::isnan(value)) return Say("fnan");
    char text[64];
    std::snprintf(text, sizeof(text), "f%016llx=%.17g",
                  static_cast<unsigned long long>(std::bit_cast<uint64_t>(value)), value);
    return Say(text);
  }
  bool String(std::string_view text) override { return SayText('s', text); }
  bool Blob(std::span<const uint8_t> bytes) override {
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (view_ != TreeView::kJson) return SayText('b', text);
    if (Repair(text) == text) return String(text);
    description.failure = "A blob that is not UTF-8 cannot be written as JSON.";
    return false;
  }
  bool Enum(const TypeRecord& type, int32_t value) override {
    if (view_ == TreeView::kExact)
      return Say("e" + std::string(type.name) + "." + std::to_string(value));
    const EnumeratorRecord* named = type.FindEnumerator(value);
    return named != nullptr ? String(named->name) : Signed(value);
  }
  bool BeginStructure(size_t) override { return Say("{"); }
  bool Member(std::string_view name) override { return SayText('.', name); }
  bool EndStructure() override { return Say("}"); }
  bool BeginCollection(size_t) override { return Say("["); }
  bool EndCollection() override { return Say("]"); }
  std::string_view ErrorMessage() const override { return description.failure; }

 private:
  bool Say(std::string_view text) {
    description.text.append(text).append(" ");
    return true;
  }
  bool SayText(char kind, std::string_view text) {
    std::string kept(text);
    if (view_ == TreeView::kJson) {
      kept = Repair(text);
      description.repaired |= kept != text;
    }
    return Say(kind + std::to_string(kept.size()) + ":" + kept);
  }
  static std::string Repair(std::string_view text) {
    std::string kept;
    for (size_t at = 0; at < text.size();) {
      const size_t size = CharacterSize(text, at);
      kept += size > 0 ? text.substr(at, size) : "\xEF\xBF\xBD";
      at += size > 0 ? size : 1;
    }
    return kept;
  }

  TreeView view_;
};

}  // namespace

TreeDescription DescribeTree(const BindingProperty& tree, TreeView view) {
  TreeDescriber describer(view);
  WriteTree(tree, describer);
  return describer.description;
}

}  // namespace Kest::Fuzz
