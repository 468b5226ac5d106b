// A second opinion on JSON text: the event reader underneath, with every check it has and nothing
// of the shortcuts around it.
#pragma once

#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <string_view>

namespace Kest::Fuzz {

// Numbers stay texts, as the reader's own conversions are not safe; lone surrogate escapes pass.
inline bool IsStrictJson(std::string_view text) {
  constexpr unsigned kFlags = rapidjson::kParseIterativeFlag |
                              rapidjson::kParseNumbersAsStringsFlag |
                              rapidjson::kParseValidateEncodingFlag;
  rapidjson::Reader reader;
  rapidjson::MemoryStream stream(text.data(), text.size());
  rapidjson::BaseReaderHandler<> handler;
  return !reader.Parse<kFlags>(stream, handler).IsError() && stream.Tell() == text.size();
}

}  // namespace Kest::Fuzz
