// Random edits of a tree beside a plain model of it, from fixed seeds.
#include <random>

#include "binding/binding_property.h"
#include "tests/binding/binding_samples.h"

namespace Kest {
namespace {

using namespace Samples;

// What a tree means, in the plainest terms.
struct Model {
  enum class Kind { kLeaf, kList, kMap };
  Kind kind = Kind::kLeaf;
  std::string leaf = "null";
  std::vector<Model> items;        // elements, or the values of members
  std::vector<std::string> names;  // of members

  static Model Of(Kind kind, std::string leaf = {}) {
    Model model;
    model.kind = kind;
    model.leaf = std::move(leaf);
    return model;
  }
  Model& Element(size_t index) {
    if (kind != Kind::kList) *this = Of(Kind::kList);
    if (items.size() <= index) items.resize(index + 1);
    return items[index];
  }
  Model& Member(const std::string& name) {
    if (kind != Kind::kMap) *this = Of(Kind::kMap);
    for (size_t i = 0; i < names.size(); ++i) {
      if (names[i] == name) return items[i];
    }
    names.push_back(name);
    return items.emplace_back();
  }
  std::string Text() const {
    if (kind == Kind::kLeaf) return leaf;
    std::string text;
    for (size_t i = 0; i < items.size(); ++i) {
      if (i > 0) text += ',';
      if (kind == Kind::kMap) text.append("\"").append(names[i]).append("\":");
      text += items[i].Text();
    }
    return kind == Kind::kList ? "[" + text + "]" : "{" + text + "}";
  }
};

class Editor {
 public:
  explicit Editor(uint32_t seed) : engine_(seed) {}

  void Edit() {
    BindingProperty* node = &tree_;
    Model* model = &model_;
    Walk(&node, &model);
    switch (Below(7)) {
      case 0:
        node->SetEmpty();
        *model = Model();
        break;
      case 1: {
        const std::string text(Below(30), static_cast<char>('a' + Below(26)));
        node->SetString(text);
        *model = Model::Of(Model::Kind::kLeaf, "\"" + text + "\"");
        break;
      }
      case 2:
        node->SetUnsigned(engine_());
        *model = Model::Of(Model::Kind::kLeaf, std::to_string(node->AsUnsigned()));
        break;
      case 3:
        node->SetStructure();
        *model = Model::Of(Model::Kind::kMap);
        break;
      case 4:
        CopyWithin(node, model);
        break;
      default:  // grow
        for (size_t i = Below(24); i > 0; --i) Child(&node, &model, /*deeper=*/false);
    }
  }

  const BindingProperty& tree() const { return tree_; }
  const Model& model() const { return model_; }

 private:
  size_t Below(size_t end) { return engine_() % end; }

  void Child(BindingProperty** node, Model** model, bool deeper) {
    BindingProperty* child;
    Model* childModel;
    if (Below(3) == 0) {
      const size_t index = Below(6);
      child = &(*node)->TakeElement(index);
      childModel = &(*model)->Element(index);
    } else {
      const std::string name = "m" + std::to_string(Below(40));
      child = &(*node)->TakeMember(name);
      childModel = &(*model)->Member(name);
    }
    if (!deeper) return;
    *node = child;
    *model = childModel;
  }
  void Walk(BindingProperty** node, Model** model) {
    for (size_t depth = Below(4); depth > 0; --depth) Child(node, model, /*deeper=*/true);
  }
  // Any value of the tree over another, above, below or beside it.
  void CopyWithin(BindingProperty* node, Model* model) {
    if (model_.Text().size() > 20000) return;
    const BindingProperty* source = &tree_;
    const Model* sourceModel = &model_;
    for (size_t depth = Below(3); depth > 0 && source->Size() > 0; --depth) {
      const size_t i = Below(source->Size());
      const bool isList = source->kind() == BindingKind::kCollection;
      source = isList ? &source->Element(i) : &source->MemberValue(i);
      sourceModel = &sourceModel->items[i];
    }
    const Model copy = *sourceModel;
    *node = *source;
    *model = copy;
  }

  std::mt19937 engine_;
  BindingProperty tree_;
  Model model_;
};

TEST(TreeModel, RandomEditsMeanTheSameAsInThePlainModel) {
  for (uint32_t seed = 301; seed < 331; ++seed) {
    Editor editor(seed);
    for (int round = 0; round < 60; ++round) {
      editor.Edit();
      const std::string text = Json(editor.tree());
      ASSERT_EQ(text, editor.model().Text()) << "seed " << seed << " round " << round;
      const BindingProperty read = Tree(text);
      ASSERT_TRUE(read == editor.tree()) << text;
      const BindingProperty copy = editor.tree();
      ASSERT_EQ(Json(copy), text);
      for (size_t i = 0; copy.kind() == BindingKind::kStructure && i < copy.Size(); ++i) {
        ASSERT_EQ(copy.FindMember(copy.MemberName(i)), &copy.MemberValue(i));
        ASSERT_EQ(read.FindMember(copy.MemberName(i)), &read.MemberValue(i));
      }
    }
  }
}

}  // namespace
}  // namespace Kest
