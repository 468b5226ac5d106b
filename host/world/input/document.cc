#include "host/world/input/document.h"

#include <optional>
#include <utility>
#include <vector>

#include "host/world/input/document_builder.h"
#include "host/world/input/yaml_tree.h"

namespace Kest::Host {
namespace {

// The builder with the value, or with the reason why there is none.
DocumentBuilder Parse(std::string_view json) {
  DocumentBuilder builder;
  if (json.find('\0') == json.npos) {
    Json::sax_parse(json, &builder);
  } else {
    builder.Fail("a NUL is in the text");  // where the library would stop
  }
  return builder;
}

std::string At(std::string_view name, Mark mark, std::string_view message) {
  return std::string(name) + ":" + std::to_string(mark.line) + ":" + std::to_string(mark.column) +
         ": " + std::string(message);
}

// How many values precede `part` in the text.
std::optional<size_t> IndexOf(const Json& root, const Json& part) {
  size_t index = 0;
  std::vector<const Json*> waiting = {&root};
  while (!waiting.empty()) {
    const Json& value = *waiting.back();
    waiting.pop_back();
    if (&value == &part) return index;
    ++index;
    if (!value.is_structured()) continue;
    for (auto child = value.rbegin(); child != value.rend(); ++child) waiting.push_back(&*child);
  }
  return std::nullopt;
}

}  // namespace

Maybe<Document> Document::FromJson(std::string_view name, std::string_view text) {
  DocumentBuilder builder = Parse(text);
  if (builder.Problem().empty()) return Document(name, text, std::move(builder.Root()));
  return Failure{std::string(name) + ": " + builder.Problem(), 400};
}

Maybe<Document> Document::FromYaml(std::string_view name, std::string_view text) {
  auto json = FromJson(name, text);
  if (json) return json;
  YamlTree tree = ReadYamlTree(text);
  if (tree.problem.empty()) return Document(name, text, std::move(tree.root));
  return Failure{At(name, tree.problemMark, tree.problem), 400};
}

std::string Document::Describe(const Json& part, bool atName, std::string_view message) const {
  const YamlTree tree = ReadYamlTree(text_);  // JSON is YAML, so it has the places of both
  const std::optional<size_t> index = IndexOf(root_, part);
  if (!index || *index >= tree.places.size()) return name_ + ": " + std::string(message);
  const YamlTree::Place& place = tree.places[*index];
  return At(name_, atName ? place.name : place.value, message);
}

}  // namespace Kest::Host
