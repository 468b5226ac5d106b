#include "host/json_text.h"

#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>
#include <cstddef>
#include <cstdint>

namespace Kest::Host {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

// Length of the valid UTF-8 sequence that `text` begins with; 0 when it begins with none.
size_t SequenceLength(std::string_view text) {
  const auto at = [&](size_t index) { return static_cast<uint8_t>(text[index]); };
  const uint8_t first = at(0);
  if (first < 0x80) return 1;
  const size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < length) return 0;
  for (size_t i = 1; i < length; ++i) {
    if ((at(i) & 0xC0) != 0x80) return 0;
  }
  const bool overlong = (first == 0xE0 && at(1) < 0xA0) || (first == 0xF0 && at(1) < 0x90);
  const bool surrogate = first == 0xED && at(1) > 0x9F;
  const bool beyond = first == 0xF4 && at(1) > 0x8F;
  return overlong || surrogate || beyond ? 0 : length;
}

}  // namespace

std::string ToUtf8(std::string_view text) {
  std::string clean;
  clean.reserve(text.size());
  while (!text.empty()) {
    const size_t length = SequenceLength(text);
    clean.append(length == 0 ? kReplacement : text.substr(0, length));
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return clean;
}

bool IsJson(std::string_view text) {
  // Numbers are only looked at, never converted: the reader's own conversion is not safe for
  // numbers of any length.
  constexpr unsigned kFlags = rapidjson::kParseIterativeFlag |
                              rapidjson::kParseValidateEncodingFlag |
                              rapidjson::kParseNumbersAsStringsFlag;
  rapidjson::MemoryStream bytes(text.data(), text.size());
  rapidjson::BaseReaderHandler<> ignore;
  rapidjson::Reader reader;
  if (reader.Parse<kFlags>(bytes, ignore).IsError()) return false;
  return bytes.Tell() == text.size();  // a NUL ends the reader early
}

JsonWriter& JsonWriter::Text(std::string_view value) {
  const std::string clean = ToUtf8(value);
  writer_.String(clean.data(), static_cast<rapidjson::SizeType>(clean.size()));
  return *this;
}

JsonWriter& JsonWriter::Raw(std::string_view json) {
  writer_.RawValue(json.data(), json.size(), rapidjson::kObjectType);
  return *this;
}

}  // namespace Kest::Host
