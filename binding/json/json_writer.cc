#include "binding/json/json_writer.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

#include "base/utf8.h"
#include "base/word_scan.h"
#include "binding/convert/conversion_context.h"
#include "binding/json/json_float.h"
#include "binding/types/simple_member.h"
#include "binding/types/type_record.h"
#include "log/logger.h"

namespace Kest {
namespace {

constexpr size_t kMaxInteger = 20;
constexpr size_t kMaxEscape = 6;
// Two quotes, a colon, and what is written too much where a short text is copied as a block.
constexpr size_t kQuoteSlack = 3 + kShortText;
constexpr std::string_view kReplacement = "\xef\xbf\xbd";

// The letter after the backslash, or 'u'.
char EscapeLetter(char c) {
  switch (c) {
    case '"':
    case '\\':
      return c;
    case '\b':
      return 'b';
    case '\f':
      return 'f';
    case '\n':
      return 'n';
    case '\r':
      return 'r';
    case '\t':
      return 't';
    default:
      return 'u';
  }
}

template <typename Integer>
char* WriteInteger(Integer value, char* to) {
  if (value >= 0 && value < 10) {  // most counts
    *to = static_cast<char>('0' + value);
    return to + 1;
  }
  return std::to_chars(to, to + kMaxInteger, value).ptr;
}

// Writes as much of a text as is plain. Returns how much that is.
size_t CopyPlainText(const std::string& text, char* to) {
  const bool isShort = text.size() < kShortText && text.capacity() + 1 >= kShortText;
  return isShort ? CopyPlainShort(text.data(), text.size(), to)
                 : CopyPlain(text.data(), text.size(), to);
}

}  // namespace

// Space for a value of `bytes`, after the comma it may need.
inline char* JsonWriter::BeginValue(size_t bytes) {
  char* to = block_.Reserve(bytes + 1);
  if (needsComma_) *to++ = ',';
  needsComma_ = true;
  return to;
}

inline bool JsonWriter::Word(std::string_view word) {
  char* to = BeginValue(word.size());
  std::memcpy(to, word.data(), word.size());
  block_.FilledTo(to + word.size());
  return true;
}

bool JsonWriter::Null() {
  return Word("null");
}
bool JsonWriter::Bool(bool value) {
  return value ? Word("true") : Word("false");
}

template <typename Integer>
bool JsonWriter::Number(Integer value) {
  char* to = BeginValue(kMaxInteger);
  block_.FilledTo(WriteInteger(value, to));
  return true;
}

bool JsonWriter::Signed(int64_t value) {
  return Number(value);
}
bool JsonWriter::Unsigned(uint64_t value) {
  return Number(value);
}

bool JsonWriter::Float(double value) {
  if (!std::isfinite(value)) {
    error_ = "A number that is not finite cannot be written as JSON.";
    return false;
  }
  char* to = BeginValue(kMaxJsonFloat);
  block_.FilledTo(to + WriteJsonFloat(value, to));
  return true;
}

bool JsonWriter::String(std::string_view text) {
  block_.FilledTo(Quote(text));
  return true;
}

bool JsonWriter::Blob(std::span<const uint8_t> bytes) {
  const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  if (!IsValidUtf8(text)) {
    error_ = "A blob that is not UTF-8 cannot be written as JSON.";
    return false;
  }
  return String(text);
}

bool JsonWriter::Enum(const TypeRecord& type, int32_t value) {
  const EnumeratorRecord* named = type.FindEnumerator(value);
  return named != nullptr ? String(named->name) : Number(value);
}

inline bool JsonWriter::Open(char bracket) {
  char* to = BeginValue(1);
  *to = bracket;
  block_.FilledTo(to + 1);
  needsComma_ = false;
  return true;
}

inline bool JsonWriter::Close(char bracket) {
  char* to = block_.Reserve(1);
  *to = bracket;
  block_.FilledTo(to + 1);
  needsComma_ = true;
  return true;
}

bool JsonWriter::BeginStructure(size_t) {
  return Open('{');
}
bool JsonWriter::EndStructure() {
  return Close('}');
}
bool JsonWriter::BeginCollection(size_t) {
  return Open('[');
}
bool JsonWriter::EndCollection() {
  return Close(']');
}

bool JsonWriter::Member(std::string_view name) {
  char* to = Quote(name);
  *to = ':';
  block_.FilledTo(to + 1);
  needsComma_ = false;
  return true;
}

// Writes a text in quotes, after the comma it may need. Returns where it ends; one byte more fits.
inline char* JsonWriter::Quote(std::string_view text) {
  char* to = BeginValue(std::min(text.size(), OutputBlock::kBytes / 2) + kQuoteSlack);
  *to++ = '"';
  if (text.size() <= OutputBlock::kBytes / 2) {
    const size_t plain = CopyPlain(text.data(), text.size(), to);
    to += plain;
    if (plain == text.size()) {
      *to++ = '"';
      return to;
    }
    text.remove_prefix(plain);
  }
  block_.FilledTo(to);
  return QuoteRest(text);
}

// Writes the rest of a text, part by part, and its closing quote.
char* JsonWriter::QuoteRest(std::string_view text) {
  while (!text.empty()) {
    const std::string_view part = text.substr(0, OutputBlock::kBytes / 2);
    char* to = block_.Reserve(part.size() + kQuoteSlack);
    const size_t plain = CopyPlain(part.data(), part.size(), to);
    block_.FilledTo(to + plain);
    text.remove_prefix(plain);
    if (plain < part.size()) Escape(&text);
  }
  char* to = block_.Reserve(kQuoteSlack);
  *to = '"';
  return to + 1;
}

// Writes the character at the front of `*text`, which is not plain, and takes it off: escaped, as
// its UTF-8 bytes, or as the replacement of a byte that is none.
void JsonWriter::Escape(std::string_view* text) {
  constexpr char kHexDigits[] = "0123456789ABCDEF";
  char* const to = block_.Reserve(kMaxEscape);
  const char c = text->front();
  if (static_cast<uint8_t>(c) >= 0x80) {
    const size_t size = Utf8CharacterSize(*text);
    const std::string_view shown = size > 0 ? text->substr(0, size) : kReplacement;
    std::memcpy(to, shown.data(), shown.size());
    block_.FilledTo(to + shown.size());
    if (size == 0) ++replacedBytes_;
    text->remove_prefix(std::max<size_t>(size, 1));
    return;
  }
  text->remove_prefix(1);
  to[0] = '\\';
  to[1] = EscapeLetter(c);
  block_.FilledTo(to + 2);
  if (to[1] == 'u') {
    to[2] = to[3] = '0';
    to[4] = kHexDigits[c >> 4];
    to[5] = kHexDigits[c & 15];
    block_.FilledTo(to + kMaxEscape);
  }
}

// Writes the name, after the comma it may need. Returns space for a value of `bytes`.
inline char* JsonWriter::BeginMember(std::string_view jsonMember, size_t bytes) {
  if (!needsComma_) jsonMember.remove_prefix(1);
  char* const to = block_.Reserve(jsonMember.size() + kShortText + bytes);
  for (size_t i = 0; i < jsonMember.size(); i += kShortText) {
    std::memcpy(to + i, jsonMember.data() + i, kShortText);
  }
  needsComma_ = true;
  return to + jsonMember.size();
}

inline void JsonWriter::WriteMember(std::string_view jsonMember, bool value) {
  char* const to = BeginMember(jsonMember, kMaxInteger);
  std::memcpy(to, value ? "true" : "fals", 4);  // NOLINT(bugprone-not-null-terminated-result)
  to[4] = 'e';
  block_.FilledTo(to + (value ? 4 : 5));
}

template <typename Integer>
inline void JsonWriter::WriteMember(std::string_view jsonMember, Integer value) {
  char* const to = BeginMember(jsonMember, kMaxInteger);
  block_.FilledTo(WriteInteger(value, to));
}

inline void JsonWriter::WriteMember(std::string_view jsonMember, const std::string& text) {
  const bool isLong = text.size() > OutputBlock::kBytes / 2;
  char* to = BeginMember(jsonMember, (isLong ? 0 : text.size()) + kQuoteSlack);
  *to++ = '"';
  const size_t plain = isLong ? 0 : CopyPlainText(text, to);
  to += plain;
  if (plain == text.size()) {
    *to++ = '"';
  } else {
    block_.FilledTo(to);
    to = QuoteRest(std::string_view(text).substr(plain));
  }
  block_.FilledTo(to);
}

inline void JsonWriter::WriteMember(std::string_view jsonMember, const TypeRecord& type,
                                    int32_t value) {
  block_.FilledTo(BeginMember(jsonMember, 0));
  needsComma_ = false;
  Enum(type, value);
}

bool JsonWriter::SimpleMembers(const TypeRecord& type, const void* object, size_t* next) {
  WalkSimpleMembers(type, object, next, [this](const FieldRecord& field, const auto&... value) {
    WriteMember(field.jsonMember, value...);
    return true;
  });
  return true;
}

void JsonWriter::Finish(const ConversionContext& context) {
  block_.Finish(context.Ok());
  if (context.Ok() && replacedBytes_ > 0) {
    LogWarning("JSON text: %zu bytes that are not UTF-8 were replaced", replacedBytes_);
  }
}

}  // namespace Kest
