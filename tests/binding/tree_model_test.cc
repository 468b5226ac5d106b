// Random edits of a tree beside a plain model of it, from fixed seeds.
#include <algorithm>
#include <random>

#include "binding/tree/binding_property.h"
#include "tests/binding/binding_samples.h"

namespace Kest {
namespace {

using namespace Samples;

// What a tree means, in the plainest terms.
struct Model {
  std::string form = "null";       // "[" and "{" are containers, all else is a leaf
  std::vector<Model> items = {};   // elements, or the values of members
  std::vector<std::string> names;  // of members

  Model& Element(size_t index) {
    if (form != "[") *this = Model{"[", {}, {}};
    if (items.size() <= index) items.resize(index + 1);
    return items[index];
  }
  Model& Member(const std::string& name) {
    if (form != "{") *this = Model{"{", {}, {}};
    const auto found = std::find(names.begin(), names.end(), name);
    if (found != names.end()) return items[static_cast<size_t>(found - names.begin())];
    names.push_back(name);
    return items.emplace_back();
  }
  std::string Json() const {
    if (form != "[" && form != "{") return form;
    std::string text = form;
    for (size_t i = 0; i < items.size(); ++i) {
      if (i > 0) text += ',';
      if (form == "{") text += "\"" + names[i] + "\":";
      text += items[i].Json();
    }
    return text + (form == "[" ? "]" : "}");
  }
};

class Editor {
 public:
  explicit Editor(uint32_t seed) : engine_(seed) {}

  void Edit() {
    node_ = &tree;
    at_ = &model;
    for (size_t depth = Below(4); depth > 0; --depth) Child(/*deeper=*/true);
    const std::string text(Below(30), static_cast<char>('a' + Below(26)));
    switch (Below(7)) {
      case 0:
        node_->SetEmpty();
        *at_ = Model();
        break;
      case 1:
        node_->SetString(text);
        *at_ = Model{"\"" + text + "\"", {}, {}};
        break;
      case 2:
        node_->SetStructure();
        *at_ = Model{"{", {}, {}};
        break;
      case 3:
        CopyWithin();
        break;
      default:  // grow
        for (size_t i = Below(24); i > 0; --i) Child(/*deeper=*/false);
    }
  }

  BindingProperty tree;
  Model model;

 private:
  size_t Below(size_t end) { return engine_() % end; }

  void Child(bool deeper) {
    const size_t index = Below(6);
    const std::string name = "m" + std::to_string(Below(40));
    const bool isList = Below(3) == 0;
    BindingProperty& child = isList ? node_->GetOrAddElement(index) : node_->GetOrAddMember(name);
    Model& childModel = isList ? at_->Element(index) : at_->Member(name);
    if (!deeper) return;
    node_ = &child;
    at_ = &childModel;
  }
  // Any value of the tree over another, above, below or beside it.
  void CopyWithin() {
    if (model.Json().size() > 20000) return;
    const BindingProperty* source = &tree;
    const Model* sourceModel = &model;
    for (size_t depth = Below(3); depth > 0 && source->Size() > 0; --depth) {
      const size_t i = Below(source->Size());
      const bool isList = source->kind() == BindingKind::kCollection;
      source = isList ? &source->Element(i) : &source->MemberValue(i);
      sourceModel = &sourceModel->items[i];
    }
    const Model copy = *sourceModel;
    *node_ = *source;
    *at_ = copy;
  }

  std::mt19937 engine_;
  BindingProperty* node_ = nullptr;  // what is edited, and its model
  Model* at_ = nullptr;
};

TEST(TreeModel, RandomEditsMeanTheSameAsInThePlainModel) {
  for (uint32_t seed = 301; seed < 331; ++seed) {
    Editor editor(seed);
    for (int round = 0; round < 60; ++round) {
      editor.Edit();
      const std::string text = Json(editor.tree);
      ASSERT_EQ(text, editor.model.Json()) << "seed " << seed << " round " << round;
      const BindingProperty read = Tree(text);
      ASSERT_TRUE(read == editor.tree) << text;
      const BindingProperty copy = editor.tree;
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
