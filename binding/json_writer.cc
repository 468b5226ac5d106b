#include "binding/json_writer.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

#include "binding/conversion_context.h"
#include "binding/json_float.h"
#include "binding/type_record.h"
#include "binding/utf8.h"
#include "log/logger.h"

namespace Kest {
namespace {

constexpr size_t kMaxInteger = 20;
constexpr size_t kMaxEscape = 6;
constexpr std::string_view kReplacement = "\xef\xbf\xbd";

// Whether every byte stands for itself inside quotes: printable ASCII but '"' and '\'. A byte
// counts as unfit when its high bit is set, when it is below 0x20, or when it equals one of the
// two: the subtractions borrow into the high bit then.
bool IsPlainWord(uint64_t word) {
  const uint64_t quotes = word ^ (kEachByte * '"');
  const uint64_t slashes = word ^ (kEachByte * '\\');
  const uint64_t unfit = (word - kEachByte * 0x20) | (quotes - kEachByte) | (slashes - kEachByte);
  return ((unfit | word) & kHighBits) == 0;
}

bool IsPlain(char c) {
  return static_cast<uint8_t>(c) >= 0x20 && static_cast<uint8_t>(c) < 0x80 && c != '"' && c != '\\';
}

// The letter behind the backslash, or 'u'.
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

}  // namespace

// Space for `bytes` more, which the caller adds to used_ as far as it is filled.
inline char* JsonWriter::Room(size_t bytes) {
  if (kBlockBytes - used_ < bytes) Flush();
  return block_.data() + used_;
}

void JsonWriter::Flush() {
  out_->append(block_.data(), used_);
  used_ = 0;
}

// Space for a value of at most `bytes`, behind the comma it may need.
inline char* JsonWriter::BeginValue(size_t bytes) {
  char* to = Room(bytes + 1);
  if (needsComma_) {
    *to++ = ',';
    ++used_;
  }
  needsComma_ = true;
  return to;
}

inline void JsonWriter::Punctuate(char mark, bool needsComma) {
  *Room(1) = mark;
  ++used_;
  needsComma_ = needsComma;
}

bool JsonWriter::Null() {
  std::memcpy(BeginValue(4), "null", 4);
  used_ += 4;
  return true;
}

bool JsonWriter::Bool(bool value) {
  const std::string_view word = value ? "true" : "false";
  std::memcpy(BeginValue(word.size()), word.data(), word.size());
  used_ += word.size();
  return true;
}

template <typename Integer>
bool JsonWriter::Number(Integer value) {
  char* to = BeginValue(kMaxInteger);
  used_ += static_cast<size_t>(std::to_chars(to, to + kMaxInteger, value).ptr - to);
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
  used_ += WriteJsonFloat(value, to);
  return true;
}

bool JsonWriter::String(std::string_view text) {
  BeginValue(0);
  Quote(text);
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

bool JsonWriter::BeginStructure(size_t) {
  BeginValue(0);
  Punctuate('{', false);
  return true;
}

bool JsonWriter::Member(std::string_view name) {
  BeginValue(0);
  Quote(name);
  Punctuate(':', false);
  return true;
}

bool JsonWriter::EndStructure() {
  Punctuate('}', true);
  return true;
}

bool JsonWriter::BeginCollection(size_t) {
  BeginValue(0);
  Punctuate('[', false);
  return true;
}

bool JsonWriter::EndCollection() {
  Punctuate(']', true);
  return true;
}

void JsonWriter::Quote(std::string_view text) {
  *Room(1) = '"';
  ++used_;
  while (true) {
    text.remove_prefix(CopyPlain(text));
    if (text.empty()) break;
    text.remove_prefix(Escape(text));
  }
  *Room(1) = '"';
  ++used_;
}

// Copies up to the first byte that must not stand for itself, or until the block is full; answers
// how many bytes that were.
size_t JsonWriter::CopyPlain(std::string_view text) {
  char* const start = Room(64);
  const size_t most = std::min(text.size(), kBlockBytes - used_);
  const char* at = text.data();
  const char* const end = at + most;
  char* to = start;
  for (; end - at >= 8; at += 8, to += 8) {
    const uint64_t word = LoadWord(at);
    if (!IsPlainWord(word)) break;
    std::memcpy(to, &word, 8);
  }
  while (at != end && IsPlain(*at)) *to++ = *at++;
  used_ += static_cast<size_t>(to - start);
  return static_cast<size_t>(at - text.data());
}

// Writes one character: escaped, as its UTF-8 bytes, or as the replacement of a byte that is none.
// Answers how many bytes of `text` it took.
size_t JsonWriter::Escape(std::string_view text) {
  constexpr char kHexDigits[] = "0123456789ABCDEF";
  char* const to = Room(kMaxEscape);
  const char c = text[0];
  if (IsPlain(c)) return 0;
  if (static_cast<uint8_t>(c) >= 0x80) {
    const size_t size = Utf8CharacterSize(text);
    const std::string_view shown = size > 0 ? text.substr(0, size) : kReplacement;
    std::memcpy(to, shown.data(), shown.size());
    used_ += shown.size();
    if (size == 0) ++replacedBytes_;
    return std::max<size_t>(size, 1);
  }
  to[0] = '\\';
  to[1] = EscapeLetter(c);
  used_ += 2;
  if (to[1] == 'u') {
    to[2] = to[3] = '0';
    to[4] = kHexDigits[c >> 4];
    to[5] = kHexDigits[c & 15];
    used_ += 4;
  }
  return 1;
}

void JsonWriter::Finish(const ConversionContext& context) {
  if (!context.Ok()) {
    out_->resize(start_);
    used_ = 0;
    return;
  }
  Flush();
  if (replacedBytes_ > 0) {
    LogWarning("JSON text: %zu bytes that are not UTF-8 were replaced", replacedBytes_);
  }
}

}  // namespace Kest
