// The small strict JSON reader of the token decoder. Unlike the reader of requests it throws, and
// it rejects a repeated member name.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "binding/tree/binding_property.h"

namespace Kest::Client::Loot::json {

class Exception : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Reader {
 public:
  // A lexical error. Messages, followed by the offender:
  //   "Unexpected character in stream: "              a character that begins no token
  //   "Unrecognized escape sequence found in string: \"  a letter after a backslash, or bad hex
  //   "Expected string: "                             letters other than true, false and null, or a
  //                                                   string without its closing quote
  //   "Unexpected character in NUMBER token: "        the first character that is no part of the
  //                                                   number, or the number when it is too big
  class ScanException : public Exception {
   public:
    using Exception::Exception;
  };

  // A grammatical error. Messages:
  //   "Unexpected token: " and the token              another one was needed here
  //   "Unexpected end of token stream"                nothing to read, or a value is missing
  //   "Unexpected End of token stream"                an object or array is not closed
  //   "Duplicate object member token: " and the name
  //   "Expected End of token stream; found " and the token after the value
  class ParseException : public Exception {
   public:
    using Exception::Exception;
  };

  // Reads the one value in `text`: numbers become floats, null the empty kind. Throws one of the
  // above, or std::bad_alloc. Nesting is not limited.
  static BindingProperty Read(std::string_view text);
};

}  // namespace Kest::Client::Loot::json
