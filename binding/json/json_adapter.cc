// RapidJSON is known to the json files of this folder alone. Nothing of it but the event reader is
// used: its own values compare and number badly.
#include "binding/json/json_adapter.h"

#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

#include <algorithm>
#include <cstring>
#include <new>

#include "base/utf8.h"
#include "binding/json/json_handler.h"
#include "binding/json/json_text_stream.h"
#include "binding/tree/tree_builder.h"

namespace Kest {
namespace {

// JsonTextStream and ThrowingAllocator rely on how this reader calls a stream and an allocator.
static_assert(RAPIDJSON_MAJOR_VERSION == 1 && RAPIDJSON_MINOR_VERSION == 1,
              "Read what the reader does with them before another version is let in.");

// Numbers stay texts because the reader's own conversions are neither exact nor safe.
constexpr unsigned kReadFlags = rapidjson::kParseInsituFlag | rapidjson::kParseIterativeFlag |
                                rapidjson::kParseNumbersAsStringsFlag;

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

struct ReadFailure {
  std::string_view text;  // empty: none
  size_t offset = 0;
};

// Runs the reader over `stream`, which holds `size` bytes.
template <unsigned flags, typename Stream>
ReadFailure RunReader(Stream& stream, size_t size, JsonHandler& handler) {
  Reader reader;
  const rapidjson::ParseResult result = reader.Parse<flags>(stream, handler);
  if (result.IsError()) {
    const bool isOurs = result.Code() == rapidjson::kParseErrorTermination;
    return {isOurs ? handler.failure() : rapidjson::GetParseError_En(result.Code()),
            result.Offset()};
  }
  // The reader takes a NUL for the end of the text.
  if (stream.Tell() < size) {
    return {rapidjson::GetParseError_En(rapidjson::kParseErrorDocumentRootNotSingular),
            stream.Tell()};
  }
  return {};
}

// Copies the text into the tree's memory, where its strings stay; null past the bound.
char* TryCopyText(TreeBuilder& builder, std::string_view text) {
  char* copy = builder.TryReserveText(text.size() + JsonTextStream::kPadding);
  if (copy == nullptr) return nullptr;
  std::memcpy(copy, text.data(), text.size());
  std::memset(copy + text.size(), 0, JsonTextStream::kPadding);
  return copy;
}

// Reads a text that is in order. False: something in it is not.
bool TryReadFast(TreeBuilder& builder, std::string_view text) {
  char* copy = TryCopyText(builder, text);
  if (copy == nullptr) return false;
  JsonHandler handler(builder, JsonHandler::Pass::kOptimistic);
  JsonTextStream stream(copy, text.size());
  return RunReader<kReadFlags>(stream, text.size(), handler).text.empty() &&
         !stream.MayHaveInvalidUtf8();
}

// Reads any text with every check on, and so finds what is wrong first.
ReadFailure ReadChecked(TreeBuilder& builder, std::string_view text) {
  char* copy = TryCopyText(builder, text);
  if (copy == nullptr) return {builder.ErrorMessage(), 0};
  JsonHandler handler(builder, JsonHandler::Pass::kWithDiagnostics);
  rapidjson::InsituStringStream stream(copy);
  return RunReader<kReadFlags | rapidjson::kParseValidateEncodingFlag>(stream, text.size(),
                                                                       handler);
}

BindingProperty ReadDocument(ConversionContext& context, std::string_view text,
                             size_t* errorOffset) {
  const std::string_view document = WithoutByteOrderMark(text);
  {
    TreeBuilder builder(document.size());
    if (TryReadFast(builder, document)) return builder.Take();
  }
  TreeBuilder builder(document.size());
  const ReadFailure failure = ReadChecked(builder, document);
  if (failure.text.empty()) return builder.Take();
  context.Fail(failure.text);
  if (errorOffset != nullptr) *errorOffset = failure.offset + (text.size() - document.size());
  return {};
}

}  // namespace

BindingProperty ReadJson(ConversionContext& context, std::string_view text, size_t* errorOffset) {
  if (!context.Ok()) return {};
  if (text.size() > kMaxJsonBytes) {
    context.Fail("Body is too large");
    return {};
  }
  try {
    return ReadDocument(context, text, errorOffset);
  } catch (const std::bad_alloc&) {
    context.FailOutOfMemory();
    return {};
  }
}

void WriteJson(ConversionContext& context, const BindingProperty& tree, std::string* out) {
  if (!context.Ok()) return;
  JsonWriter writer(out);
  CheckWritten(context, WriteTree(tree, writer), writer);
  writer.Finish(context);
}

}  // namespace Kest
