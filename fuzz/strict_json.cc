#include "fuzz/strict_json.h"

#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <cerrno>
#include <cstdlib>
#include <string>

#include "binding/tree/tree_builder.h"

namespace Kest::Fuzz {
namespace {

struct Handler : rapidjson::BaseReaderHandler<rapidjson::UTF8<>, Handler> {
  TreeBuilder tree;

  bool Null() { return tree.Null(); }
  bool Bool(bool value) { return tree.Bool(value); }
  bool RawNumber(const char* chars, uint32_t size, bool) {
    const std::string text(chars, size);
    errno = 0;
    if (text.find_first_of(".eE") == std::string::npos) {
      if (text[0] == '-') {
        const int64_t value = std::strtoll(text.c_str(), nullptr, 10);
        if (errno == 0) return tree.Signed(value);
      } else {
        const uint64_t value = std::strtoull(text.c_str(), nullptr, 10);
        if (errno == 0) return tree.Unsigned(value);
      }
    }
    return tree.Float(std::strtod(text.c_str(), nullptr));
  }
  bool String(const char* chars, uint32_t size, bool) { return tree.String({chars, size}); }
  bool StartObject() { return tree.BeginStructure(0); }
  bool Key(const char* chars, uint32_t size, bool) { return tree.Member({chars, size}); }
  bool EndObject(uint32_t) { return tree.EndStructure(); }
  bool StartArray() { return tree.BeginCollection(0); }
  bool EndArray(uint32_t) { return tree.EndCollection(); }
};

}  // namespace

StrictReading ReadStrictJson(std::string_view text) {
  // Numbers stay strings, as the reader's own conversions are not safe.
  constexpr unsigned kFlags = rapidjson::kParseIterativeFlag |
                              rapidjson::kParseNumbersAsStringsFlag |
                              rapidjson::kParseValidateEncodingFlag;
  rapidjson::Reader reader;
  rapidjson::MemoryStream stream(text.data(), text.size());
  Handler handler;
  const rapidjson::ParseResult result = reader.Parse<kFlags>(stream, handler);
  if (result.IsError()) {
    return {std::nullopt, rapidjson::GetParseError_En(result.Code()), result.Offset()};
  }
  if (stream.src_ != stream.end_) {  // a NUL
    constexpr auto kCode = rapidjson::kParseErrorDocumentRootNotSingular;
    return {std::nullopt, rapidjson::GetParseError_En(kCode),
            static_cast<size_t>(stream.src_ - stream.begin_)};
  }
  return {handler.tree.Take(), {}, 0};
}

}  // namespace Kest::Fuzz
