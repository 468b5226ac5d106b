// Writes values as compact JSON text.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "binding/value_writer.h"

namespace Kest {

class ConversionContext;

// Appends one value to a text. Gathers in a block of its own, so the text grows in large steps and
// nothing is allocated when it has room. Call Finish at the end: without it the text is unfinished.
// Threads: one.
class JsonWriter final : public ValueWriter {
 public:
  // `out` is borrowed until Finish.
  explicit JsonWriter(std::string* out);
  JsonWriter(const JsonWriter&) = delete;
  JsonWriter& operator=(const JsonWriter&) = delete;

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
  std::string_view ErrorText() const override { return error_; }

  // Completes the text; when `context` has failed, takes back everything that was appended. Logs
  // one warning when bytes were replaced because they were no UTF-8.
  void Finish(const ConversionContext& context);

 private:
  char* Room(size_t bytes);
  void Flush();
  void BeginValue();
  void AppendText(std::string_view text);

  static constexpr size_t kBlockBytes = 4096;
  std::string* out_;
  size_t start_;  // size of *out_ before this value
  std::string_view error_;
  size_t replacedBytes_ = 0;
  size_t used_ = 0;
  bool needsComma_ = false;
  std::array<char, kBlockBytes> block_;
};

}  // namespace Kest
