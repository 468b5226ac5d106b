// Small JSON helpers of the host: a writer that takes any text, and a test of a whole document.
#pragma once

#include <string>
#include <string_view>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace Kest::Host {

// Whether `text` is one JSON document: valid UTF-8, nothing behind it. Nesting costs no stack.
bool IsJson(std::string_view text);

// Writes one JSON document member by member, in the order of the calls.
class JsonWriter {
 public:
  JsonWriter& BeginObject() { return writer_.StartObject(), *this; }
  JsonWriter& EndObject() { return writer_.EndObject(), *this; }
  JsonWriter& BeginArray() { return writer_.StartArray(), *this; }
  JsonWriter& EndArray() { return writer_.EndArray(), *this; }
  JsonWriter& Key(std::string_view name) { return Text(name); }
  JsonWriter& Text(std::string_view value);
  JsonWriter& Number(int64_t value) { return writer_.Int64(value), *this; }
  JsonWriter& Number(uint64_t value) { return writer_.Uint64(value), *this; }
  JsonWriter& Bool(bool value) { return writer_.Bool(value), *this; }
  // `json` is a whole document and is taken as it stands.
  JsonWriter& Raw(std::string_view json);

  std::string Take() const { return {buffer_.GetString(), buffer_.GetSize()}; }

 private:
  rapidjson::StringBuffer buffer_;
  rapidjson::Writer<rapidjson::StringBuffer> writer_{buffer_};
};

}  // namespace Kest::Host
