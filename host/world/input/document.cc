#include "host/world/input/document.h"

#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "host/world/input/document_builder.h"
#include "host/world/input/document_layers.h"
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

Document Document::Layered(Document base, Document over, const std::vector<std::string>& without) {
  Json root = base.root_;
  for (const std::string& path : without) RemoveMember(&root, path);
  MergeOver(&root, over.root_);
  Document merged(over.name_, over.text_, std::move(root));
  merged.layers_ = {std::make_shared<const Document>(std::move(over)),
                    std::make_shared<const Document>(std::move(base))};
  return merged;
}

// The places of a text, read when the first of them is wanted.
class Document::Places {
 public:
  // The document that `part` comes from, a layer of a layered one, and the place there.
  std::string Describe(const Document& document, const Json& part, bool atName,
                       std::string_view message) {
    const Document* owner = &document;
    const Json* own = &part;
    while (own != nullptr && !owner->layers_.empty()) {
      const ValuePath path = PathTo(owner->root_, *own);
      const Document* layer = nullptr;
      own = nullptr;
      for (size_t i = 0; i < owner->layers_.size() && own == nullptr; ++i) {
        layer = owner->layers_[i].get();
        own = FindInLayer(layer->root_, path);
      }
      owner = layer;
    }
    const std::optional<size_t> index = own == nullptr ? std::nullopt : IndexOf(owner->root_, *own);
    const auto& places = own == nullptr ? none_ : PlacesOf(*owner);
    if (!index || *index >= places.size()) return document.name_ + ": " + std::string(message);
    const YamlTree::Place& place = places[*index];
    return At(owner->name_, atName ? place.name : place.value, message);
  }

 private:
  const std::vector<YamlTree::Place>& PlacesOf(const Document& document) {
    const auto [found, isNew] = byDocument_.try_emplace(&document);
    // JSON is YAML, so it has the places of both.
    if (isNew) found->second = ReadYamlTree(document.text_).places;
    return found->second;
  }

  std::map<const Document*, std::vector<YamlTree::Place>> byDocument_;
  const std::vector<YamlTree::Place> none_ = {};
};

std::vector<std::string> Document::Describe(const std::vector<Note>& notes) const {
  Places places;
  std::vector<std::string> lines;
  lines.reserve(notes.size());
  for (const Note& note : notes) {
    lines.push_back(places.Describe(*this, *note.part, note.atName, note.message));
  }
  return lines;
}

std::string Document::Describe(const Json& part, bool atName, std::string_view message) const {
  return Places().Describe(*this, part, atName, message);
}

}  // namespace Kest::Host
