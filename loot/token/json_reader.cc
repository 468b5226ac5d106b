#include "loot/token/json_reader.h"

#include <set>
#include <vector>

#include "binding/tree/tree_builder.h"
#include "loot/token/json_tokens.h"

namespace Kest::Client::Loot::json {
namespace {

[[noreturn]] void Fail(std::string_view text, std::string_view offender = {}) {
  std::string message(text);
  message += offender;
  throw Reader::ParseException(message);
}

// Reads one value with an explicit stack of the containers that are open.
class Parser {
 public:
  explicit Parser(std::string_view text) : tokens_(text), tree_(text.size()) {}

  BindingProperty Read() {
    if (TakesValue(tokens_.Next())) {
      while (!open_.empty()) Step(tokens_.Next());
    }
    const Token rest = tokens_.Next();
    if (rest.kind != TokenKind::kEnd) Fail("Expected End of token stream; found ", rest.text);
    return tree_.Take();
  }

 private:
  struct Container {
    bool isObject;
    bool isFirst = true;
    std::set<std::string, std::less<>> names;
  };

  void Check(bool written) {
    if (!written) throw Exception(std::string(tree_.ErrorMessage()));
  }

  // One element, member or end of the innermost container.
  void Step(Token token) {
    Container& container = open_.back();
    const TokenKind end = container.isObject ? TokenKind::kObjectEnd : TokenKind::kArrayEnd;
    if (token.kind == TokenKind::kEnd) Fail("Unexpected End of token stream");
    if (token.kind == end) {
      Check(container.isObject ? tree_.EndStructure() : tree_.EndCollection());
      open_.pop_back();
      return;
    }
    if (!container.isFirst) {
      if (token.kind != TokenKind::kNext) Fail("Unexpected token: ", token.text);
      token = tokens_.Next();
    }
    container.isFirst = false;
    if (container.isObject) token = TakeName(container, token);
    TakesValue(token);
  }

  // Reads a member's name and its ":"; returns the first token of its value.
  Token TakeName(Container& container, const Token& token) {
    if (token.kind == TokenKind::kEnd) Fail("Unexpected End of token stream");
    if (token.kind != TokenKind::kString) Fail("Unexpected token: ", token.text);
    if (!container.names.insert(token.text).second) {
      Fail("Duplicate object member token: ", token.text);
    }
    Check(tree_.Member(token.text));
    const Token colon = tokens_.Next();
    if (colon.kind == TokenKind::kEnd) Fail("Unexpected End of token stream");
    if (colon.kind != TokenKind::kMember) Fail("Unexpected token: ", colon.text);
    return tokens_.Next();
  }

  // Writes a scalar, or opens a container and returns true.
  bool TakesValue(const Token& token) {
    switch (token.kind) {
      case TokenKind::kObjectBegin:
        Check(tree_.BeginStructure(0));
        open_.push_back({true, true, {}});
        return true;
      case TokenKind::kArrayBegin:
        Check(tree_.BeginCollection(0));
        open_.push_back({false, true, {}});
        return true;
      case TokenKind::kString:
        Check(tree_.String(token.text));
        return false;
      case TokenKind::kNumber:
        Check(tree_.Float(token.number));
        return false;
      case TokenKind::kTrue:
        Check(tree_.Bool(true));
        return false;
      case TokenKind::kFalse:
        Check(tree_.Bool(false));
        return false;
      case TokenKind::kNull:
        Check(tree_.Null());
        return false;
      case TokenKind::kEnd:
        Fail("Unexpected end of token stream");
      default:
        Fail("Unexpected token: ", token.text);
    }
  }

  TokenStream tokens_;
  TreeBuilder tree_;
  std::vector<Container> open_;
};

}  // namespace

BindingProperty Reader::Read(std::string_view text) {
  // All tokens are scanned before the first is parsed: lexical errors are reported first.
  TokenStream scan(text);
  while (scan.Next().kind != TokenKind::kEnd) {
  }
  return Parser(text).Read();
}

}  // namespace Kest::Client::Loot::json
