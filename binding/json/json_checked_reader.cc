// RapidJSON is known to this file alone. Nothing of it but the event reader is used: its own values
// compare and number badly.
#include "binding/json/json_checked_reader.h"

#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <algorithm>
#include <cstring>
#include <new>

#include "base/utf8.h"
#include "binding/json/json_number.h"

namespace Kest {
namespace {

// ThrowingAllocator relies on how this reader calls an allocator.
static_assert(RAPIDJSON_MAJOR_VERSION == 1 && RAPIDJSON_MINOR_VERSION == 1,
              "Read what the reader does with it before another version is let in.");

// Numbers stay texts because the reader's own conversions are neither exact nor safe.
constexpr unsigned kReadFlags = rapidjson::kParseIterativeFlag |
                                rapidjson::kParseNumbersAsStringsFlag |
                                rapidjson::kParseValidateEncodingFlag;

// RapidJSON writes through any pointer its allocator returns, so this one never returns null.
class ThrowingAllocator {
 public:
  void* Malloc(size_t size) { return size > 0 ? ::operator new(size) : nullptr; }
  void* Realloc(void* memory, size_t oldSize, size_t size) {
    void* larger = Malloc(size);
    if (memory != nullptr && larger != nullptr)
      std::memcpy(larger, memory, std::min(oldSize, size));
    Free(memory);
    return larger;
  }
  static void Free(void* memory) { ::operator delete(memory); }
};

using Reader = rapidjson::GenericReader<rapidjson::UTF8<>, rapidjson::UTF8<>, ThrowingAllocator>;

// What the reader calls with each token. A call that returns false ends the reading.
class Handler {
 public:
  explicit Handler(TreeBuilder& builder) : builder_(builder) {}

  bool Null() { return Check(builder_.Null()); }
  bool Bool(bool value) { return Check(builder_.Bool(value)); }
  bool RawNumber(const char* chars, uint32_t size, bool) {
    const JsonNumber outcome = AddJsonNumber(builder_, {chars, size});
    if (outcome == JsonNumber::kTooBig) return Fail("Number too big to be stored in double.");
    return Check(outcome == JsonNumber::kAdded);
  }
  bool String(const char* chars, uint32_t size, bool) {
    return CheckSurrogates({chars, size}) && Check(builder_.String({chars, size}));
  }
  bool StartObject() { return Check(builder_.BeginStructure(0)); }
  bool Key(const char* chars, uint32_t size, bool) {
    return CheckSurrogates({chars, size}) && Check(builder_.Member({chars, size}));
  }
  bool EndObject(uint32_t) { return Check(builder_.EndStructure()); }
  bool StartArray() { return Check(builder_.BeginCollection(0)); }
  bool EndArray(uint32_t) { return Check(builder_.EndCollection()); }

  // Numbers come as texts, so these are never called.
  bool Int(int32_t) { return false; }
  bool Uint(uint32_t) { return false; }
  bool Int64(int64_t) { return false; }
  bool Uint64(uint64_t) { return false; }
  bool Double(double) { return false; }

  // Why a call has returned false.
  std::string_view failure() const { return failure_; }

 private:
  bool Fail(std::string_view message) {
    failure_ = message;
    return false;
  }
  bool Check(bool isDone) { return isDone || Fail(builder_.ErrorMessage()); }
  // The reader lets an escape of half a surrogate pair through.
  bool CheckSurrogates(std::string_view text) {
    return IsValidUtf8(text) || Fail("The surrogate pair in string is invalid.");
  }

  TreeBuilder& builder_;
  std::string_view failure_;
};

}  // namespace

JsonFailure ReadJsonChecked(TreeBuilder& builder, std::string_view text) {
  Reader reader;
  Handler handler(builder);
  rapidjson::MemoryStream stream(text.data(), text.size());
  const rapidjson::ParseResult result = reader.Parse<kReadFlags>(stream, handler);
  if (result.IsError()) {
    const bool isOurs = result.Code() == rapidjson::kParseErrorTermination;
    return {isOurs ? handler.failure() : rapidjson::GetParseError_En(result.Code()),
            result.Offset()};
  }
  // The reader takes a NUL for the end of the text.
  if (stream.Tell() < text.size()) {
    return {rapidjson::GetParseError_En(rapidjson::kParseErrorDocumentRootNotSingular),
            stream.Tell()};
  }
  return {};
}

}  // namespace Kest
