// Any tree as JSON text and back: what returns is the tree but for the losses that JSON means
// (described_tree.h), or nothing is written, for the reason that is due.
#include "binding/json/json_adapter.h"
#include "fuzz/described_tree.h"
#include "fuzz/fuzz_support.h"
#include "fuzz/properties.h"
#include "fuzz/samples.h"
#include "fuzz/strict_json.h"
#include "fuzz/tree_notation.h"

namespace Kest::Fuzz {
namespace {

void CheckTree(const BindingProperty& tree) {
  const TreeDescription expected = DescribeTree(tree, TreeView::kJson);
  ConversionContext context;
  std::string text = "kept";
  WriteJson(context, tree, &text);
  RequireSame(expected.failure, context.ErrorMessage(), "writing fails for the reason due");
  Require(text.starts_with("kept"), "what was there stays", text);
  if (!context.Ok()) {
    Require(text == "kept", "a failure writes nothing", text);
    return;
  }
  text.erase(0, 4);
  Require(IsStrictJson(text), "what was written is JSON", text);
  const BindingProperty read = ReadJson(context, text);
  Require(context.Ok(), "what was written is read", context.ErrorMessage() + "\n" + text);
  RequireSame(expected.text, ExactTree(read), "written and read");
}

}  // namespace

void CheckJsonWriteRead(std::string_view input) {
  CheckTree(TakeTree(&input, Samples::GradeRecord()));
}

}  // namespace Kest::Fuzz
