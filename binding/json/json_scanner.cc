#include "binding/json/json_scanner.h"

#include <array>
#include <cstring>

#include "base/ascii.h"
#include "base/utf8.h"
#include "base/word_scan.h"
#include "binding/json/json_number.h"

namespace Kest {
namespace {

// For what runs once or more for each value: the place in the text stays in a register only when it
// is passed and returned by value, and nothing is called that could change it elsewhere.
#define KEST_PER_VALUE [[gnu::always_inline]] inline

bool IsSpace(char c) {
  return c == ' ' || c == '\n' || c == '\r' || c == '\t';
}

bool IsHigh(char c) {
  return static_cast<uint8_t>(c) >= 0x80;
}

// What a character after a backslash is for; 0: it is for none, or begins a longer escape.
constexpr std::array<char, 256> MakeUnescaped() {
  std::array<char, 256> table = {};
  table['"'] = '"';
  table['\\'] = '\\';
  table['/'] = '/';
  table['b'] = '\b';
  table['f'] = '\f';
  table['n'] = '\n';
  table['r'] = '\r';
  table['t'] = '\t';
  return table;
}
constexpr std::array<char, 256> kUnescaped = MakeUnescaped();

// A text that ends with a closing bracket: a move over characters of another kind stops
// there at the latest, so that only what looks at more than one at a time asks for the end.
// Each step takes the place in the text and returns the next one, or null to give up.
class JsonScanner {
 public:
  JsonScanner(TreeBuilder& builder, std::string_view text, char* strings)
      : builder_(builder), end_(text.data() + text.size()), strings_(strings) {}

  bool Scan(const char* at);

 private:
  static const char* SkipSpaces(const char* at) {
    while (IsSpace(*at)) ++at;
    return at;
  }
  size_t Left(const char* at) const { return static_cast<size_t>(end_ - at); }

  const char* AfterValue(const char* at);
  const char* TakeName(const char* at);
  const char* TakeOtherName(const char* at);
  const char* AddString(const char* at);
  const char* AddWord(const char* at, std::string_view word, bool isAdded);
  const char* AddNumber(const char* at);
  const char* AddOtherNumber(const char* at);
  const char* Decode(const char* at, std::string_view* decoded);
  size_t CopyPlain(const char* at, char* to) const;
  const char* DecodeSpecial(const char* at, char** to) const;
  const char* DecodeLong(const char* at, char** to) const;
  const char* DecodeUnicode(const char* at, char** to) const;
  const char* ReadHex(const char* at, uint32_t* code) const;

  TreeBuilder& builder_;
  const char* const end_;
  char* strings_;  // where the next one is decoded to
  bool isDone_ = false;
};

bool JsonScanner::Scan(const char* at) {
  while (true) {
    switch (*at) {
      case ' ':
      case '\n':
      case '\r':
      case '\t':
        ++at;
        continue;
      case '"':
        at = AddString(at);
        break;
      case '{':
        if (!builder_.BeginStructure(0)) return false;
        at = SkipSpaces(at + 1);
        if (*at == '}') break;
        at = *at == '"' ? TakeName(at + 1) : nullptr;
        if (at == nullptr) return false;
        continue;
      case '[':
        if (!builder_.BeginCollection(0)) return false;
        at = SkipSpaces(at + 1);
        if (*at == ']') break;
        continue;
      case 't':
        at = AddWord(at, "true", builder_.Bool(true));
        break;
      case 'f':
        at = AddWord(at, "false", builder_.Bool(false));
        break;
      case 'n':
        at = AddWord(at, "null", builder_.Null());
        break;
      default:
        at = AddNumber(at);
    }
    if (at == nullptr) return false;
    at = AfterValue(at);
    if (at == nullptr) return isDone_;
  }
}

// Ends the containers that end here. Returns where the next value begins, or spaces before it.
KEST_PER_VALUE const char* JsonScanner::AfterValue(const char* at) {
  bool isStructure = builder_.IsInStructure();
  if (isStructure && at[0] == ',' && at[1] == '"') return TakeName(at + 2);
  while (true) {
    at = SkipSpaces(at);
    if (*at == ',') break;
    if (*at != (isStructure ? '}' : ']')) return nullptr;
    if (!(isStructure ? builder_.EndStructure() : builder_.EndCollection())) return nullptr;
    ++at;
    isDone_ = builder_.IsComplete() && at == end_;
    if (builder_.IsComplete() || at == end_) return nullptr;
    isStructure = builder_.IsInStructure();
  }
  if (!isStructure) return at + 1;
  at = SkipSpaces(at + 1);
  return *at == '"' ? TakeName(at + 1) : nullptr;
}

// The name whose first character is at `at`, and the colon.
KEST_PER_VALUE const char* JsonScanner::TakeName(const char* at) {
  const size_t size = builder_.SizeOfExpectedMember({at, Left(at)});
  if (size > 0 && at[size] == '"') {
    builder_.ExpectedMember();
    at += size + 1;
  } else {
    at = TakeOtherName(at);
    if (at == nullptr) return nullptr;
  }
  if (*at != ':') at = SkipSpaces(at);
  return *at == ':' ? at + 1 : nullptr;
}

const char* JsonScanner::TakeOtherName(const char* at) {
  std::string_view name;
  const char* const last = Decode(at, &name);
  if (last == nullptr) return nullptr;
  const bool isVerbatim = static_cast<size_t>(last - at) == name.size() + 1;
  const bool isTaken = isVerbatim ? builder_.VerbatimMember(name) : builder_.StoredMember(name);
  return isTaken ? last : nullptr;
}

KEST_PER_VALUE const char* JsonScanner::AddString(const char* at) {
  std::string_view string;
  at = Decode(at + 1, &string);
  return at != nullptr && builder_.StoredString(string) ? at : nullptr;
}

const char* JsonScanner::AddWord(const char* at, std::string_view word, bool isAdded) {
  if (!isAdded || Left(at) < word.size()) return nullptr;
  return std::memcmp(at, word.data(), word.size()) == 0 ? at + word.size() : nullptr;
}

// Integers of up to 18 digits, which need no test of their range.
KEST_PER_VALUE const char* JsonScanner::AddNumber(const char* at) {
  const bool isNegative = *at == '-';
  const char* const first = at + (isNegative ? 1 : 0);
  const char* last = first;
  uint64_t magnitude = 0;
  if (Left(first) >= sizeof(uint64_t)) {
    const uint64_t word = LoadWord(first);
    const size_t count = CountDigits(word);
    if (count == 0) return nullptr;
    magnitude = DigitsValue(word, count);
    last += count;
  }
  for (; IsDigit(*last); ++last) magnitude = magnitude * 10 + static_cast<uint64_t>(*last - '0');
  constexpr ptrdiff_t kMostDigits = 18;
  const bool isOther = last - first > kMostDigits || *last == '.' || *last == 'e' || *last == 'E';
  if (isOther) return AddOtherNumber(at);
  if (last == first || (*first == '0' && last - first > 1)) return nullptr;
  const bool isAdded =
      isNegative ? builder_.Signed(-static_cast<int64_t>(magnitude)) : builder_.Unsigned(magnitude);
  return isAdded ? last : nullptr;
}

const char* SkipDigits(const char* at) {
  while (IsDigit(*at)) ++at;
  return at;
}

// The end of a number, or null when it is none, or one that might be too large.
const char* NumberEnd(const char* at) {
  constexpr ptrdiff_t kMostDigits = 300;
  constexpr ptrdiff_t kMostExponentDigits = 2;
  const char* const first = at + (*at == '-' ? 1 : 0);
  at = SkipDigits(first);
  if (at == first || (*first == '0' && at - first > 1) || at - first > kMostDigits) return nullptr;
  if (*at == '.') {
    const char* const fraction = at + 1;
    at = SkipDigits(fraction);
    if (at == fraction) return nullptr;
  }
  if (*at == 'e' || *at == 'E') {
    const char* const exponent = at + (at[1] == '-' || at[1] == '+' ? 2 : 1);
    at = SkipDigits(exponent);
    if (at == exponent || at - exponent > kMostExponentDigits) return nullptr;
  }
  return at;
}

const char* JsonScanner::AddOtherNumber(const char* at) {
  const char* const last = NumberEnd(at);
  if (last == nullptr) return nullptr;
  const std::string_view number(at, static_cast<size_t>(last - at));
  return AddJsonNumber(builder_, number) == JsonNumber::kAdded ? last : nullptr;
}

// Decodes the string whose first character is at `at`. Returns what follows its closing quote.
KEST_PER_VALUE const char* JsonScanner::Decode(const char* at, std::string_view* decoded) {
  char* to = strings_;
  while (true) {
    size_t plain = 0;
    do {
      plain = CopyPlain(at, to);
      at += plain;
      to += plain;
    } while (plain == kPlainBlock);
    if (at == end_) return nullptr;
    if (*at == '"') break;
    at = DecodeSpecial(at, &to);
    if (at == nullptr) return nullptr;
  }
  *decoded = {strings_, static_cast<size_t>(to - strings_)};
  strings_ = to;
  return at + 1;
}

// Copies plain characters, up to kPlainBlock of them; returns how many.
KEST_PER_VALUE size_t JsonScanner::CopyPlain(const char* at, char* to) const {
  if (Left(at) >= kPlainBlock) return CopyPlainBlock(at, to);
  char block[kPlainBlock] = {};  // zeros are not plain
  std::memcpy(block, at, Left(at));
  return CopyPlainBlock(block, to);
}

// Decodes what is not plain. Nearly all of it comes in two bytes, of which neither is the last of
// the text.
KEST_PER_VALUE const char* JsonScanner::DecodeSpecial(const char* at, char** to) const {
  const auto first = static_cast<uint8_t>(at[0]);
  const auto second = static_cast<uint8_t>(at[1]);
  if (first == '\\') {
    const char c = kUnescaped[second];
    if (c == '\0') return second == 'u' ? DecodeUnicode(at + 2, to) : nullptr;
    *(*to)++ = c;
    return at + 2;
  }
  if (first < 0xc2 || first > 0xdf || second < 0x80 || second > 0xbf) return DecodeLong(at, to);
  (*to)[0] = at[0];
  (*to)[1] = at[1];
  *to += 2;
  return at + 2;
}

// Copies characters that are not ASCII, if there are any.
const char* JsonScanner::DecodeLong(const char* at, char** to) const {
  do {
    const size_t size = IsHigh(*at) ? Utf8CharacterSize({at, Left(at)}) : 0;
    if (size == 0) return nullptr;
    *to = static_cast<char*>(std::memcpy(*to, at, size)) + size;
    at += size;
  } while (IsHigh(*at));
  return at;
}

// Four hexadecimal digits of one half of UTF-16.
const char* JsonScanner::ReadHex(const char* at, uint32_t* code) const {
  constexpr size_t kDigits = 4;
  if (Left(at) < kDigits) return nullptr;
  *code = 0;
  for (size_t i = 0; i < kDigits; ++i) {
    const char c = at[i];
    const char lower = static_cast<char>(c | 0x20);
    const bool isLetter = lower >= 'a' && lower <= 'f';
    if (!IsDigit(c) && !isLetter) return nullptr;
    *code = *code << 4 | static_cast<uint32_t>(isLetter ? lower - 'a' + 10 : c - '0');
  }
  return at + kDigits;
}

const char* JsonScanner::DecodeUnicode(const char* at, char** to) const {
  uint32_t code = 0;
  at = ReadHex(at, &code);
  if (at == nullptr) return nullptr;
  if (code >= 0xdc00 && code <= 0xdfff) return nullptr;
  if (code >= 0xd800 && code <= 0xdbff) {
    uint32_t low = 0;
    if (Left(at) < 2 || at[0] != '\\' || at[1] != 'u') return nullptr;
    at = ReadHex(at + 2, &low);
    if (at == nullptr || low < 0xdc00 || low > 0xdfff) return nullptr;
    code = 0x10000 + ((code - 0xd800) << 10) + (low - 0xdc00);
  }
  *to = WriteUtf8(code, *to);
  return at;
}

}  // namespace

bool TryScanJson(TreeBuilder& builder, std::string_view text) {
  while (!text.empty() && IsSpace(text.back())) text.remove_suffix(1);
  while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
  const bool isStructure = text.starts_with('{') && text.ends_with('}');
  if (!isStructure && !(text.starts_with('[') && text.ends_with(']'))) return false;
  char* const strings = builder.TryReserveText(text.size() + kPlainBlock);
  return strings != nullptr && JsonScanner(builder, text, strings).Scan(text.data());
}

}  // namespace Kest
