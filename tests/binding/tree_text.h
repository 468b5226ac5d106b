// A tree as a text that keeps kinds apart, for tables.
#pragma once

#include <string>

#include "binding/json/json_writer.h"
#include "tests/binding/binding_samples.h"

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

}  // namespace Kest::Samples
