// Any text as a JSON document. A text that is read means the same to a strict reader, and when it
// is written and read again; one that is not read fails as it does with that reader, or before for
// one of the reasons that only this one has. The fast pass alone gives up, or reads the very tree
// that the pass with every check reads.
#include "binding/json/json_adapter.h"
#include "binding/json/json_checked_reader.h"
#include "binding/json/json_scanner.h"
#include "fuzz/described_tree.h"
#include "fuzz/fuzz_support.h"
#include "fuzz/guarded_text.h"
#include "fuzz/properties.h"
#include "fuzz/strict_json.h"

namespace Kest::Fuzz {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// What the strict reader does not look at.
constexpr std::string_view kStricterFailures[] = {
    "The surrogate pair in string is invalid.",
    "Number too big to be stored in double.",
    "Too many values.",
};

BindingProperty Read(ConversionContext& context, std::string_view text, size_t* offset) {
  const DecoderBounds bounds;
  return ReadJson(context, text, offset);
}

void CheckWrittenAgain(const BindingProperty& tree) {
  const TreeDescription expected = DescribeTree(tree, TreeView::kJson);
  Require(!expected.repaired, "what was read is UTF-8", expected.text);
  ConversionContext context;
  std::string text;
  WriteJson(context, tree, &text);
  Require(context.Ok(), "what was read can be written", context.ErrorMessage());
  Require(IsStrictJson(text), "what was written is JSON", text);
  size_t offset = 0;
  const BindingProperty again = Read(context, text, &offset);
  Require(context.Ok(), "what was written is read", context.ErrorMessage());
  RequireSame(expected.text, ExactTree(again), "written and read again");
}

void CheckText(std::string_view text) {
  ConversionContext context;
  size_t offset = 0;
  const BindingProperty tree = Read(context, text, &offset);
  const size_t markSize = text.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
  text.remove_prefix(markSize);
  const StrictReading strict = ReadStrictJson(text);
  if (context.Ok()) {
    Require(strict.tree.has_value(), "a text that is read is strict JSON", text);
    RequireSame(ExactTree(*strict.tree), ExactTree(tree), "two readers read the same");
    CheckWrittenAgain(tree);
    Require(BindingProperty(tree) == tree, "a copy equals its tree", text);
    return;
  }
  const std::string failure = context.ErrorMessage();
  Require(tree.IsEmpty(), "a failure returns nothing", failure);
  Require(offset <= markSize + text.size(), "the failure lies in the text", failure);
  const size_t strictOffset = markSize + strict.offset;
  if (strict.tree || failure != strict.failure || offset < strictOffset) {
    return RequireListed(failure, {kStricterFailures});
  }
  RequireSame(std::to_string(strictOffset), std::to_string(offset), failure);
}

}  // namespace

bool CheckJsonScan(std::string_view text) {
  const GuardedText guarded(text);
  TreeBuilder scanned(text.size());
  if (!TryScanJson(scanned, guarded.View())) return false;
  TreeBuilder checked(text.size());
  const JsonFailure failure = ReadJsonChecked(checked, text);
  Require(failure.message.empty(), "what the fast pass reads is in order", failure.message);
  RequireSame(ExactTree(checked.Take()), ExactTree(scanned.Take()), "both passes read the same");
  return true;
}

void CheckJsonRead(std::string_view input) {
  const std::string text = Stretched(input, '\x01');
  CheckText(text);
  CheckJsonScan(text);
}

}  // namespace Kest::Fuzz
