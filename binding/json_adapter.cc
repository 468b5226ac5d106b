// The only file of this folder that knows RapidJSON. Nothing of it but the event reader is used:
// its own values compare and number badly.
#if defined(__SSE2__)
#define RAPIDJSON_SSE2
#endif

#include "binding/json_adapter.h"

#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

#include <algorithm>
#include <cstring>
#include <new>

#include "binding/json_handler.h"
#include "binding/tree_builder.h"
#include "binding/utf8.h"

namespace Kest {
namespace {

// Zeros behind the text: its end for the reader, and room for the blocks it loads whole.
constexpr size_t kPadding = 32;

// Enough for most small bodies.
constexpr size_t kSmallTree = 512;

constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";

// Numbers stay texts because the reader's own conversions are neither exact nor safe.
constexpr unsigned kReadFlags = rapidjson::kParseInsituFlag | rapidjson::kParseIterativeFlag |
                                rapidjson::kParseNumbersAsStringsFlag;

// RapidJSON writes through whatever its allocator answers, so this one never answers null.
class ThrowingAllocator {
 public:
  static const bool kNeedFree = true;

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

template <unsigned flags>
ReadFailure RunReader(char* text, size_t size, JsonHandler& handler) {
  rapidjson::InsituStringStream stream(text);
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

// Reads `text` into `builder`, whose memory keeps a copy in which the strings stay.
ReadFailure ReadInto(TreeBuilder& builder, std::string_view text) {
  char* copy = builder.TryReserveText(text.size() + kPadding);
  if (copy == nullptr) return {builder.ErrorText(), 0};
  std::memcpy(copy, text.data(), text.size());
  std::memset(copy + text.size(), 0, kPadding);
  JsonHandler handler(builder, text.find("\\u") != std::string_view::npos);
  // Checked at once, encodings cost little. Only where something is wrong, the reader's slow check
  // says what comes first: that, or a fault of grammar.
  if (IsValidUtf8(text)) return RunReader<kReadFlags>(copy, text.size(), handler);
  return RunReader<kReadFlags | rapidjson::kParseValidateEncodingFlag>(copy, text.size(), handler);
}

BindingProperty ReadChecked(ConversionContext& context, std::string_view text,
                            size_t* errorOffset) {
  const bool isMarked = text.substr(0, kByteOrderMark.size()) == kByteOrderMark;
  const std::string_view document = text.substr(isMarked ? kByteOrderMark.size() : 0);
  // Nodes take about as much room as the text.
  TreeBuilder builder(2 * document.size() + kSmallTree);
  const ReadFailure failure = ReadInto(builder, document);
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
    return ReadChecked(context, text, errorOffset);
  } catch (const std::bad_alloc&) {
    context.Fail("Out of memory");
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
