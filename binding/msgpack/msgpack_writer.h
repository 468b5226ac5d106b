// Writes values as MessagePack.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/output_block.h"
#include "binding/tree/value_writer.h"

namespace Kest {

class ConversionContext;

// Appends one value to a text, each item in the shortest form of its kind: signed numbers in the
// int family, unsigned ones in the uint family, both as a fixint where one holds them; floats in
// 32 bits where that loses nothing, NaN and infinities included. Enumerators are written by name,
// by number where they have none; texts and blobs with their bytes as they are. A text, blob or
// container whose size needs more than 32 bits cannot be written.
//
// It allocates nothing when the text has capacity. Finish ends it: before, the text is incomplete.
// Threads: one.
class MessagePackWriter final : public ValueWriter {
 public:
  // `out` is borrowed until Finish.
  explicit MessagePackWriter(std::string* out) : block_(out) {}

  bool Null() override;
  bool Bool(bool value) override;
  bool Signed(int64_t value) override;
  bool Unsigned(uint64_t value) override;
  bool Float(double value) override;
  bool String(std::string_view text) override;
  bool Blob(std::span<const uint8_t> bytes) override;
  bool Enum(const TypeRecord& type, int32_t value) override;
  bool BeginStructure(size_t size) override;
  bool Member(std::string_view name) override { return String(name); }
  bool EndStructure() override { return true; }
  bool BeginCollection(size_t size) override;
  bool EndCollection() override { return true; }
  bool SimpleMembers(const TypeRecord& type, const void* object, size_t* next) override;
  std::string_view ErrorMessage() const override { return error_; }

  // Completes the text; when `context` has failed, takes back everything that was appended.
  void Finish(const ConversionContext& context);

 private:
  char* BeginMember(std::string_view name, size_t bytes);
  void WriteMember(std::string_view name, bool value);
  template <typename Integer>
  void WriteMember(std::string_view name, Integer value);
  void WriteMember(std::string_view name, const std::string& text);
  void WriteMember(std::string_view name, const TypeRecord& type, int32_t value);
  bool Byte(uint8_t byte);
  template <typename Width>
  bool Number(uint8_t lead, Width number);
  bool NarrowNumber(uint8_t lead8, uint64_t number);
  bool Container(uint8_t fix, uint8_t lead16, size_t size);
  bool Bytes(std::string_view bytes);
  bool CheckSize(size_t size);

  OutputBlock block_;
  std::string_view error_;
};

}  // namespace Kest
