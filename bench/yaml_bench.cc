// YAML text to a tree, against libyaml alone: what its parser takes to find the events of the same
// text, which then go unused. One iteration reads the whole document.
#include <yaml.h>

#include <string>

#include "bench/allocation_counter.h"
#include "bench/comparison.h"
#include "bench/json_data.h"
#include "binding/json/json_adapter.h"
#include "binding/yaml/yaml_adapter.h"

namespace Kest::Bench {
namespace {

constexpr size_t kItems = 750;

// A scalar as people write it: quoted only where it must be.
std::string Scalar(const BindingProperty& value) {
  std::string text;
  if (value.kind() != BindingKind::kString) {
    ConversionContext context(LootRegistry());
    WriteJson(context, value, &text);
    return text;
  }
  const std::string_view chars = value.AsString();
  const bool isWord = chars.find_first_not_of(
                          "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_ "
                          "0123456789") == std::string_view::npos;
  const bool isPlain = isWord && !chars.empty() && chars.front() > '9' && chars.back() != ' ';
  text.append(isPlain ? "" : "'").append(chars).append(isPlain ? "" : "'");
  return text;
}

// An inventory in block style, about 0.9 MB: one mapping per item.
std::string MakeInventory() {
  std::string text = "# What one player owns\n---\nversion: 3\nitems:\n";
  size_t count = 0;
  for (const auto& [id, item] : SampleItems()) {
    if (count++ == kItems) break;
    ConversionContext context(LootRegistry());
    const BindingProperty tree = ToProperty(context, item);
    for (size_t i = 0; i < tree.Size(); ++i) {
      text.append(i == 0 ? "  - " : "    ").append(tree.MemberName(i)).append(": ");
      text.append(Scalar(tree.MemberValue(i))).append("\n");
    }
  }
  return text;
}

const std::string& Inventory() {
  static const std::string text = MakeInventory();
  return text;
}

void ReadTree() {
  ConversionContext context(LootRegistry());
  const BindingProperty tree = ReadYaml(context, Inventory());
  Require(context.Ok() && tree.FindMember("items")->Size() == kItems, "YAML was read wrongly");
  Keep(tree);
}

void FindEvents() {
  const std::string& text = Inventory();
  yaml_parser_t parser;
  yaml_parser_initialize(&parser);
  yaml_parser_set_encoding(&parser, YAML_UTF8_ENCODING);
  yaml_parser_set_input_string(&parser, reinterpret_cast<const unsigned char*>(text.data()),
                               text.size());
  yaml_event_t event;
  bool isLast = false;
  while (!isLast) {
    Require(yaml_parser_parse(&parser, &event) != 0, "libyaml refuses the text");
    isLast = event.type == YAML_STREAM_END_EVENT;
    yaml_event_delete(&event);
  }
  yaml_parser_delete(&parser);
}

}  // namespace

void AddRows(Table& table) {
  table.Compare("YAML to tree", ReadTree, "libyaml's events alone", FindEvents, AtLeast(0.9));
  table.Value("YAML to tree: allocations", Allocations(ReadTree), "", 30);
}

}  // namespace Kest::Bench
