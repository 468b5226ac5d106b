#include "host/http/json_text.h"

#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include "base/utf8.h"

namespace Kest::Host {

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
  const std::string clean = RepairUtf8(value);
  writer_.String(clean.data(), static_cast<rapidjson::SizeType>(clean.size()));
  return *this;
}

JsonWriter& JsonWriter::Raw(std::string_view json) {
  writer_.RawValue(json.data(), json.size(), rapidjson::kObjectType);
  return *this;
}

}  // namespace Kest::Host
