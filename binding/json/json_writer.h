// Writes values as compact JSON text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/output_block.h"
#include "binding/tree/value_writer.h"

namespace Kest {

class ConversionContext;

// Appends one value to a text: no whitespace, only what must be escaped is escaped, floats in the
// shortest form that reads back exactly and always with a point or exponent. Enumerators are
// written by name, by number where they have none; a byte that is no UTF-8 as U+FFFD. NaN,
// infinities and blobs that are no UTF-8 cannot be written.
//
// It allocates nothing when the text has capacity. Finish ends it: before, the text is incomplete.
// Threads: one.
class JsonWriter final : public ValueWriter {
 public:
  // `out` is borrowed until Finish.
  explicit JsonWriter(std::string* out) : block_(out) {}

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
  bool SimpleMembers(const TypeRecord& type, const void* object, size_t* next) override;
  std::string_view ErrorMessage() const override { return error_; }

  // Completes the text; when `context` has failed, takes back everything that was appended. Logs
  // one warning when bytes were replaced.
  void Finish(const ConversionContext& context);

 private:
  char* BeginValue(size_t bytes);
  char* BeginMember(std::string_view jsonMember, size_t bytes);
  void WriteMember(std::string_view jsonMember, bool value);
  template <typename Integer>
  void WriteMember(std::string_view jsonMember, Integer value);
  void WriteMember(std::string_view jsonMember, const std::string& text);
  void WriteMember(std::string_view jsonMember, const TypeRecord& type, int32_t value);
  char* Quote(std::string_view text);
  char* QuoteRest(std::string_view text);
  void Escape(std::string_view* text);
  bool Word(std::string_view word);
  template <typename Integer>
  bool Number(Integer value);
  bool Open(char bracket);
  bool Close(char bracket);

  OutputBlock block_;
  std::string_view error_;
  size_t replacedBytes_ = 0;
  bool needsComma_ = false;  // a value ended last
};

}  // namespace Kest
