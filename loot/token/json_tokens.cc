#include "loot/token/json_tokens.h"

#include <cmath>

#include "base/number_string.h"
#include "loot/token/json_reader.h"

namespace Kest::Client::Loot::json {
namespace {

constexpr std::string_view kWhitespace = " \t\r\n";
constexpr std::string_view kNumberCharacters = "0123456789.eE-+";

[[noreturn]] void FailScan(std::string_view text, std::string_view offender) {
  std::string message(text);
  message += offender;
  throw Reader::ScanException(message);
}

void AppendUtf8(unsigned code, std::string* out) {
  const auto tail = [out](unsigned bits) { *out += static_cast<char>(0x80u | (bits & 0x3Fu)); };
  if (code < 0x80) {
    *out += static_cast<char>(code);
  } else if (code < 0x800) {
    *out += static_cast<char>(0xC0u | (code >> 6));
    tail(code);
  } else if (code < 0x10000) {
    *out += static_cast<char>(0xE0u | (code >> 12));
    tail(code >> 6);
    tail(code);
  } else {
    *out += static_cast<char>(0xF0u | (code >> 18));
    tail(code >> 12);
    tail(code >> 6);
    tail(code);
  }
}

}  // namespace

Token TokenStream::Next() {
  const size_t begin = text_.find_first_not_of(kWhitespace, position_);
  position_ = begin == std::string_view::npos ? text_.size() : begin;
  if (position_ == text_.size()) return {};
  const char first = text_[position_];
  switch (first) {
    case '{':
      return Word(TokenKind::kObjectBegin, "{");
    case '}':
      return Word(TokenKind::kObjectEnd, "}");
    case '[':
      return Word(TokenKind::kArrayBegin, "[");
    case ']':
      return Word(TokenKind::kArrayEnd, "]");
    case ',':
      return Word(TokenKind::kNext, ",");
    case ':':
      return Word(TokenKind::kMember, ":");
    case 't':
      return Word(TokenKind::kTrue, "true");
    case 'f':
      return Word(TokenKind::kFalse, "false");
    case 'n':
      return Word(TokenKind::kNull, "null");
    case '"':
      return String();
    default:
      break;
  }
  if (first == '-' || (first >= '0' && first <= '9')) return Number();
  FailScan("Unexpected character in stream: ", {&first, 1});
}

Token TokenStream::Word(TokenKind kind, std::string_view word) {
  if (text_.substr(position_, word.size()) != word) FailScan("Expected string: ", word);
  position_ += word.size();
  return {kind, std::string(word), 0};
}

Token TokenStream::String() {
  Token token{TokenKind::kString, {}, 0};
  ++position_;
  for (;;) {
    const size_t stop = text_.find_first_of("\"\\", position_);
    if (stop == std::string_view::npos) FailScan("Expected string: ", "\"");
    token.text += text_.substr(position_, stop - position_);
    position_ = stop + 1;
    if (text_[stop] == '"') return token;
    Escape(&token.text);
  }
}

void TokenStream::Escape(std::string* out) {
  constexpr std::string_view kLetters = "\"\\/bfnrt";
  constexpr std::string_view kMeanings = "\"\\/\b\f\n\r\t";
  const std::string_view letter = text_.substr(position_, 1);
  if (letter == "u") {
    ++position_;
    unsigned code = HexUnit();
    if (code >= 0xD800 && code < 0xDC00 && text_.substr(position_, 2) == "\\u") {
      position_ += 2;
      const unsigned low = HexUnit();
      if (low < 0xDC00 || low > 0xDFFF)
        FailScan("Unrecognized escape sequence found in string: \\", "u");
      code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
    }
    if (code >= 0xD800 && code < 0xE000)
      FailScan("Unrecognized escape sequence found in string: \\", "u");
    AppendUtf8(code, out);
    return;
  }
  const size_t found = letter.empty() ? std::string_view::npos : kLetters.find(letter);
  if (found == std::string_view::npos) {
    FailScan("Unrecognized escape sequence found in string: \\", letter);
  }
  *out += kMeanings[found];
  ++position_;
}

unsigned TokenStream::HexUnit() {
  unsigned unit = 0;
  for (int i = 0; i < 4; ++i) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    const char raw = position_ < text_.size() ? text_[position_] : '\0';
    const char lower = raw >= 'A' && raw <= 'F' ? static_cast<char>(raw - 'A' + 'a') : raw;
    const size_t digit = lower == '\0' ? std::string_view::npos : kDigits.find(lower);
    if (digit == std::string_view::npos) {
      FailScan("Unrecognized escape sequence found in string: \\", "u");
    }
    unit = unit * 16 + static_cast<unsigned>(digit);
    ++position_;
  }
  return unit;
}

Token TokenStream::Number() {
  const size_t end = text_.find_first_not_of(kNumberCharacters, position_);
  const std::string_view text = text_.substr(position_, end - position_);
  Token token{TokenKind::kNumber, std::string(text), 0};
  const size_t taken = ParseDecimal(text, &token.number);
  if (taken != text.size())
    FailScan("Unexpected character in NUMBER token: ", text.substr(taken, 1));
  if (!std::isfinite(token.number)) FailScan("Unexpected character in NUMBER token: ", text);
  position_ += text.size();
  return token;
}

}  // namespace Kest::Client::Loot::json
