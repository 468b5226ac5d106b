// Prints trees for people: in failures of GoogleTest, and in debuggers.
//
//   {"name": "chest", "count": 3u, "bytes": blob 6b, "tone": WARM, "tags": [true, -2, 2.5, null]}
#pragma once

#include <iomanip>
#include <ostream>

#include "base/number_string.h"
#include "binding/tree/value_writer.h"
#include "binding/types/type_record.h"

namespace Kest {

class TreePrinter final : public ValueWriter {
 public:
  explicit TreePrinter(std::ostream& out) : out_(out) {}

  bool Null() override { return Print("null"); }
  bool Bool(bool value) override { return Print(value ? "true" : "false"); }
  bool Signed(int64_t value) override { return Print(value); }
  bool Unsigned(uint64_t value) override { return Print(value, "u"); }
  bool Float(double value) override { return Print(RoundTripString(value)); }
  bool String(std::string_view text) override { return Print(std::quoted(text)); }
  bool Blob(std::span<const uint8_t> bytes) override {
    Print("blob ");
    for (const uint8_t byte : bytes) {
      out_ << "0123456789abcdef"[byte >> 4] << "0123456789abcdef"[byte & 15];
    }
    return true;
  }
  bool Enum(const TypeRecord& type, int32_t value) override {
    const EnumeratorRecord* named = type.FindEnumerator(value);
    return named != nullptr ? Print(named->name) : Print(value);
  }
  bool BeginStructure(size_t) override { return Open("{"); }
  bool Member(std::string_view name) override {
    Print(std::quoted(name), ": ");
    isFirst_ = true;
    return true;
  }
  bool EndStructure() override { return Close("}"); }
  bool BeginCollection(size_t) override { return Open("["); }
  bool EndCollection() override { return Close("]"); }
  std::string_view ErrorMessage() const override { return {}; }

 private:
  template <typename... Parts>
  bool Print(const Parts&... parts) {
    if (!isFirst_) out_ << ", ";
    isFirst_ = false;
    (out_ << ... << parts);
    return true;
  }
  bool Open(const char* bracket) {
    Print(bracket);
    return isFirst_ = true;
  }
  bool Close(const char* bracket) {
    out_ << bracket;
    isFirst_ = false;
    return true;
  }

  std::ostream& out_;
  bool isFirst_ = true;  // of its container
};

inline std::ostream& operator<<(std::ostream& out, const BindingProperty& tree) {
  TreePrinter printer(out);
  WriteTree(tree, printer);
  return out;
}

}  // namespace Kest
