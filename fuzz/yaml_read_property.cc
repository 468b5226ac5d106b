// Any text as YAML. A tree that is read can be taken as a free value, and written as JSON unless it
// holds what JSON does not; that JSON, being YAML as well, reads as the same tree. What is not read
// fails with a listed message.
#include <algorithm>

#include "binding/convert/convert.h"
#include "binding/json/json_adapter.h"
#include "binding/yaml/yaml_adapter.h"
#include "fuzz/described_tree.h"
#include "fuzz/failure_messages.h"
#include "fuzz/fuzz_support.h"
#include "fuzz/properties.h"

namespace Kest::Fuzz {
namespace {

// Aliases make large trees of small texts: those are read, but not looked at from all sides.
constexpr size_t kMaxJson = 64 << 10;
// Nearly the limit: so much shows what libyaml makes of directives and nesting when they are not
// counted.
constexpr size_t kStretchedText = 1'000'000;
// libyaml finds a key no longer than this.
constexpr size_t kMaxKey = 1000;

BindingProperty Read(ConversionContext& context, std::string_view text) {
  const DecoderBounds bounds;
  return ReadYaml(context, text);
}

bool HasLongKey(std::string_view json) {
  size_t run = 0;
  for (size_t i = 0; i < json.size(); ++i) {
    const bool isEscape = json[i] == '\\';
    run = json[i] == '"' ? 0 : run + 1;
    if (isEscape) ++i, ++run;
    if (run > kMaxKey) return true;
  }
  return false;
}

// YAML breaks lines at characters that JSON keeps, and refuses others.
bool IsYamlToo(std::string_view json) {
  return json.size() <= kMaxJson && !HasLongKey(json) &&
         std::all_of(json.begin(), json.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

void CheckTree(const BindingProperty& tree) {
  ConversionContext context;
  std::string json;
  WriteJson(context, tree, &json);
  if (!context.Ok()) return RequireListed(context.ErrorMessage(), {kJsonWriteFailures});
  if (!IsYamlToo(json)) return;

  BindingProperty free;
  Assign(context, "<tree>", tree, &free);
  Require(context.Ok(), "a tree is a free value", context.ErrorMessage());
  RequireSame(ExactTree(tree), ExactTree(free), "a tree is a free value");

  const BindingProperty again = Read(context, json);
  Require(context.Ok(), "JSON is YAML", context.ErrorMessage() + "\n" + json);
  RequireSame(DescribeTree(tree, TreeView::kJson).text, ExactTree(again), json);
}

void CheckText(std::string_view text) {
  ConversionContext context;
  const BindingProperty tree = Read(context, text);
  if (context.Ok()) return CheckTree(tree);
  RequireListed(context.ErrorMessage(), {kYamlFailures});
  Require(tree.IsEmpty(), "a failure returns nothing", context.ErrorMessage());
}

}  // namespace

void CheckYamlRead(std::string_view input) {
  CheckText(Stretched(input, '\x01', kStretchedText));
}

}  // namespace Kest::Fuzz
