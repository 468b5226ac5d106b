// What the JSON reader does with each token.
#pragma once

#include <cstdint>
#include <string_view>

#include "binding/tree/tree_builder.h"

namespace Kest {

// The handler that RapidJSON's reader calls, feeding a TreeBuilder. Texts lie in the builder's own
// memory and stay there. A call that returns false ends the reading; `failure` says why.
class JsonHandler {
 public:
  // Which stream the reader runs over, for the two things that differ.
  enum class Pass {
    kOptimistic,  // JsonTextStream: a number ends where it is said to be; surrogates are looked at
                  // there
    kWithDiagnostics,  // RapidJSON's own: a number begins there; half a surrogate pair gets through
  };

  JsonHandler(TreeBuilder& builder, Pass pass) : builder_(builder), pass_(pass) {}

  bool Null() { return Check(builder_.Null()); }
  bool Bool(bool value) { return Check(builder_.Bool(value)); }
  bool RawNumber(const char* chars, uint32_t size, bool copy);
  bool String(const char* chars, uint32_t size, bool) {
    return CheckText({chars, size}) && Check(builder_.StoredString({chars, size}));
  }
  bool StartObject() { return Check(builder_.BeginStructure(0)); }
  bool Key(const char* chars, uint32_t size, bool) {
    return CheckText({chars, size}) && Check(builder_.StoredMember({chars, size}));
  }
  bool EndObject(uint32_t) { return Check(builder_.EndStructure()); }
  bool StartArray() { return Check(builder_.BeginCollection(0)); }
  bool EndArray(uint32_t) { return Check(builder_.EndCollection()); }

  // Numbers come as texts, so these are never called.
  bool Int(int32_t) { return false; }
  bool Uint(uint32_t) { return false; }
  bool Int64(int64_t) { return false; }
  bool Uint64(uint64_t) { return false; }
  bool Double(double) { return false; }

  // Empty while no call has returned false.
  std::string_view failure() const { return failure_; }

 private:
  bool Check(bool isDone) {
    if (!isDone) failure_ = builder_.ErrorMessage();
    return isDone;
  }
  bool CheckText(std::string_view text) {
    return pass_ == Pass::kOptimistic || CheckSurrogates(text);
  }
  bool CheckSurrogates(std::string_view text);

  TreeBuilder& builder_;
  Pass pass_;
  std::string_view failure_;
};

}  // namespace Kest
