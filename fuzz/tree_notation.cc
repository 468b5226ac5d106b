#include "fuzz/tree_notation.h"

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "binding/tree/tree_builder.h"

namespace Kest::Fuzz {
namespace {

class NotationReader {
 public:
  NotationReader(std::string_view* text, const TypeRecord& enumeration)
      : text_(*text), enumeration_(enumeration) {}

  BindingProperty Take() {
    TakeValue();
    while (!open_.empty()) {
      if (text_.empty() || text_.front() == open_.back()) {
        Close();
      } else if (open_.back() == ']') {
        TakeValue();
      } else {
        std::string name = TakeText(':');
        for (char& c : name) c = static_cast<char>(c & 0x7F);
        tree_.Member(name);
        TakeValue();
      }
    }
    return tree_.Take();
  }

 private:
  char TakeByte() {
    const char byte = text_.front();
    text_.remove_prefix(1);
    return byte;
  }

  std::string TakeText(char end) {
    std::string text;
    while (!text_.empty()) {
      char byte = TakeByte();
      if (byte == end) break;
      if (byte == '\\' && !text_.empty()) byte = TakeByte();
      text += byte;
    }
    return text;
  }

  // One value, or the start of a container.
  void TakeValue() {
    while (!text_.empty() && std::string_view("ntfiudDsbe[{").find(text_.front()) == kNone) {
      if (!open_.empty() && text_.front() == open_.back()) break;
      text_.remove_prefix(1);
    }
    if (text_.empty() || text_.front() == ']' || text_.front() == '}') {
      if (open_.empty() || open_.back() == '}') tree_.Null();
      return;
    }
    const char kind = TakeByte();
    if (kind == '[' || kind == '{') return Open(kind);
    TakeScalar(kind);
  }

  void TakeScalar(char kind) {
    if (kind == 'n') {
      tree_.Null();
    } else if (kind == 't' || kind == 'f') {
      tree_.Bool(kind == 't');
    } else if (kind == 'D') {
      tree_.Float(TakeBits());
    } else {
      TakeWritten(kind, TakeText(';'));
    }
  }

  void TakeWritten(char kind, const std::string& text) {
    if (kind == 'i') {
      tree_.Signed(std::strtoll(text.c_str(), nullptr, 10));
    } else if (kind == 'u') {
      tree_.Unsigned(std::strtoull(text.c_str(), nullptr, 10));
    } else if (kind == 'd') {
      tree_.Float(std::strtod(text.c_str(), nullptr));
    } else if (kind == 's') {
      tree_.String(text);
    } else if (kind == 'b') {
      tree_.Blob({reinterpret_cast<const uint8_t*>(text.data()), text.size()});
    } else {
      tree_.Enum(enumeration_, static_cast<int32_t>(std::strtol(text.c_str(), nullptr, 10)));
    }
  }

  double TakeBits() {
    uint64_t bits = 0;
    for (int i = 0; i < 8 && !text_.empty(); ++i) {
      bits |= uint64_t{static_cast<uint8_t>(TakeByte())} << (8 * i);
    }
    return std::bit_cast<double>(bits);
  }

  void Open(char bracket) {
    open_.push_back(bracket == '[' ? ']' : '}');
    bracket == '[' ? tree_.BeginCollection(0) : tree_.BeginStructure(0);
  }

  void Close() {
    if (!text_.empty()) text_.remove_prefix(1);
    open_.back() == ']' ? tree_.EndCollection() : tree_.EndStructure();
    open_.pop_back();
  }

  static constexpr size_t kNone = std::string_view::npos;

  std::string_view& text_;  // what is left of the caller's
  const TypeRecord& enumeration_;
  TreeBuilder tree_;
  std::vector<char> open_;  // the brackets that end what is open
};

}  // namespace

BindingProperty TakeTree(std::string_view* text, const TypeRecord& enumeration) {
  return NotationReader(text, enumeration).Take();
}

}  // namespace Kest::Fuzz
