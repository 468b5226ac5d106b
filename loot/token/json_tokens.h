// Splits JSON into tokens for json::Reader.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Kest::Client::Loot::json {

enum class TokenKind {
  kEnd,  // of the input
  kObjectBegin,
  kObjectEnd,
  kArrayBegin,
  kArrayEnd,
  kNext,    // ","
  kMember,  // ":"
  kString,
  kNumber,
  kTrue,
  kFalse,
  kNull,
};

struct Token {
  TokenKind kind = TokenKind::kEnd;
  std::string text;  // a string's content, otherwise the token as it is
  double number = 0;
};

// Borrows the input. Next throws Reader::ScanException.
class TokenStream {
 public:
  explicit TokenStream(std::string_view text) : text_(text) {}

  Token Next();

 private:
  Token Word(TokenKind kind, std::string_view word);
  Token String();
  Token Number();
  void Escape(std::string* out);
  unsigned HexUnit();

  std::string_view text_;
  size_t position_ = 0;
};

}  // namespace Kest::Client::Loot::json
