// Trees as texts that keep kinds apart, for tables, and as MessagePack.
#pragma once

#include <cmath>
#include <cstdlib>
#include <string>

#include "binding/json/json_writer.h"
#include "binding/msgpack/msgpack_reader.h"
#include "binding/msgpack/msgpack_writer.h"
#include "tests/binding/binding_samples.h"
#include "tests/support/classic_locale.h"

namespace Kest::Samples {

// ~ true s-1 u1 f1.5 "text" b"bytes" [u1,u2] {a:u1,b:~}
inline std::string Shown(const BindingProperty& value) {
  std::string text;
  switch (value.kind()) {
    case BindingKind::kEmpty:
      return "~";
    case BindingKind::kSigned:
      return "s" + Json(value);
    case BindingKind::kUnsigned:
      return "u" + Json(value);
    case BindingKind::kFloat:
      return "f" + Json(value);
    case BindingKind::kBlob:
      return "b" + Json(value);
    case BindingKind::kCollection:
      for (size_t i = 0; i < value.Size(); ++i) text += "," + Shown(value.Element(i));
      return "[" + text.substr(text.empty() ? 0 : 1) + "]";
    case BindingKind::kStructure:
      for (size_t i = 0; i < value.Size(); ++i) {
        text += "," + std::string(value.MemberName(i)) + ":" + Shown(value.MemberValue(i));
      }
      return "{" + text.substr(text.empty() ? 0 : 1) + "}";
    default:
      return Json(value);
  }
}

// What reading made of a text: the tree, or why there is none.
inline std::string Shown(const ConversionContext& context, const BindingProperty& tree) {
  return context.Ok() ? Shown(tree) : context.ErrorMessage();
}

// The value of an input: s-1 u1 f1.5 fnan e1 (an enumerator) bBYTES, or JSON.
inline BindingProperty ReadInput(const std::string& text) {
  const Testing::ClassicLocale classic;
  const std::string rest = text.substr(1);
  switch (text == "false" ? '0' : text[0]) {
    case 's':
      return Signed(std::stoll(rest));
    case 'u':
      return Unsigned(std::stoull(rest));
    case 'f':
      return Float(rest == "nan" ? NAN : rest == "inf" ? INFINITY : std::strtod(&rest[0], nullptr));
    case 'e':
      return Enum(std::stoi(rest));
    case 'b':
      return Blob(rest);
    default:
      return Tree(text);
  }
}

inline std::span<const uint8_t> BytesOf(std::string_view text) {
  return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

inline BindingProperty ReadPacked(ConversionContext& context, std::string_view bytes) {
  size_t consumed = 0;
  BindingProperty tree = ReadMessagePack(context, BytesOf(bytes), &consumed);
  EXPECT_EQ(consumed, context.Ok() ? bytes.size() : 0);
  return tree;
}

inline void WritePacked(ConversionContext& context, const BindingProperty& tree, std::string* out) {
  MessagePackWriter writer(out);
  CheckWritten(context, WriteTree(tree, writer), writer);
  writer.Finish(context);
}

}  // namespace Kest::Samples
