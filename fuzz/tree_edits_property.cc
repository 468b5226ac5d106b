// Any edits of two trees beside plain models of them: after each step a tree means what its model
// means. An edit is one byte, with a digit or letter after it where it needs one:
//   0-9  go down to that child         ^  go to the root          @  go to the other tree's root
//   E B I U D S X G  set empty, a bool, a number (two kinds), a float, a text, bytes, an enumerator
//   C T  set an empty collection, structure
//   i3   take element 3                a  append                  mk  take member "k"
//   !    remember this place           =  copy what is there to here       >  move it here
//   P    replace the tree by a copy of its own copy               W  swap the trees
// All other bytes do nothing.
#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "fuzz/described_tree.h"
#include "fuzz/fuzz_support.h"
#include "fuzz/properties.h"
#include "fuzz/samples.h"

namespace Kest::Fuzz {
namespace {

// Trees double with each copy into themselves.
constexpr size_t kMaxValues = 500;

// What a tree means: a leaf by its description, a container by its children.
struct Model {
  std::string leaf = "null ";           // "[" and "{" are containers
  std::vector<std::string> names = {};  // of members
  std::vector<Model> children = {};

  Model& Element(size_t index) {
    if (leaf != "[") *this = Model{"["};
    if (children.size() <= index) children.resize(index + 1);
    return children[index];
  }
  Model& Member(const std::string& name) {
    if (leaf != "{") *this = Model{"{"};
    const auto found = std::find(names.begin(), names.end(), name);
    if (found != names.end()) return children[static_cast<size_t>(found - names.begin())];
    names.push_back(name);
    return children.emplace_back();
  }
  size_t Count() const {
    size_t count = 1;
    for (const Model& child : children) count += child.Count();
    return count;
  }
  // The form of DescribeTree.
  std::string Describe() const {
    if (leaf != "[" && leaf != "{") return leaf;
    std::string text = leaf + " ";
    for (size_t i = 0; i < children.size(); ++i) {
      if (leaf == "{") text += "." + std::to_string(names[i].size()) + ":" + names[i] + " ";
      text += children[i].Describe();
    }
    return text + (leaf == "[" ? "] " : "} ");
  }
};

struct Pair {
  BindingProperty tree;
  Model model;
};

// A place in one of the trees, by the children to go down to: it outlives what it stands for.
struct Place {
  size_t tree = 0;
  std::vector<size_t> steps;
};

struct Node {
  BindingProperty* value;
  Model* model;
};

class Editor {
 public:
  // One edit at the start of `*text`, which is not empty.
  void Edit(std::string_view* text) {
    const char edit = Take(text);
    if (edit >= '0' && edit <= '9') return GoDown(static_cast<size_t>(edit - '0'));
    switch (edit) {
      case '^':
        here_.steps.clear();
        break;
      case '@':
        here_ = {1 - here_.tree, {}};
        break;
      case '!':
        marked_ = here_;
        break;
      case '=':
        return CopyMarked(/*moves=*/false);
      case '>':
        return CopyMarked(/*moves=*/true);
      case 'P':
        return CopyTwice();
      case 'W':
        std::swap(pairs_[0].tree, pairs_[1].tree);
        std::swap(pairs_[0].model, pairs_[1].model);
        break;
      default:
        Change(edit, text);
    }
  }

  void Check() const {
    for (const Pair& pair : pairs_) {
      RequireSame(pair.model.Describe(), ExactTree(pair.tree), "a tree means what its model means");
    }
  }

 private:
  static char Take(std::string_view* text) {
    if (text->empty()) return '0';
    const char byte = text->front();
    text->remove_prefix(1);
    return byte;
  }

  // The node at `*place`, which is cut where its steps no longer lead.
  Node Find(Place* place) {
    Node node = {&pairs_[place->tree].tree, &pairs_[place->tree].model};
    for (size_t i = 0; i < place->steps.size(); ++i) {
      const size_t step = place->steps[i];
      if (step >= node.model->children.size()) {
        place->steps.resize(i);
        break;
      }
      node.value = node.model->leaf == "[" ? &node.value->GetOrAddElement(step)
                                           : &node.value->GetOrAddMember(node.model->names[step]);
      node.model = &node.model->children[step];
    }
    return node;
  }

  void GoDown(size_t step) {
    const Node node = Find(&here_);
    if (step < node.model->children.size()) here_.steps.push_back(step);
  }

  void Change(char edit, std::string_view* text) {
    const Node node = Find(&here_);
    BindingProperty& value = *node.value;
    if (edit == 'i' || edit == 'a') {
      const size_t size = node.model->leaf == "[" ? node.model->children.size() : 0;
      const size_t index = edit == 'a' ? size : static_cast<uint8_t>(Take(text)) % 16u;
      const BindingProperty& taken = edit == 'a' ? value.Append() : value.GetOrAddElement(index);
      node.model->Element(index);
      Require(value.FindElement(index) == &taken, "an element is found where it was taken");
    } else if (edit == 'm') {
      const std::string name(1, Take(text));
      const BindingProperty& taken = value.GetOrAddMember(name);
      node.model->Member(name);
      Require(value.FindMember(name) == &taken, "a member is found where it was taken");
    } else if (edit == 'C' || edit == 'T') {
      edit == 'C' ? value.SetCollection() : value.SetStructure();
      *node.model = Model{edit == 'C' ? "[" : "{"};
    } else {
      SetLeaf(edit, node);
    }
  }

  static void SetLeaf(char edit, const Node& node) {
    static constexpr uint8_t kBytes[] = {'a', 0xFF};
    using Value = BindingProperty;
    static constexpr struct {
      char edit;
      const char* description;
      void (*set)(Value& value);
    } kLeaves[] = {
        {'E', "null ", [](Value& value) { value.SetEmpty(); }},
        {'B', "true ", [](Value& value) { value.SetBool(true); }},
        {'I', "i-5 ", [](Value& value) { value.SetSigned(-5); }},
        {'U', "u18446744073709551615 ", [](Value& value) { value.SetUnsigned(UINT64_MAX); }},
        {'D', "f3fe0000000000000=0.5 ", [](Value& value) { value.SetFloat(0.5); }},
        {'S', "s9:some text ", [](Value& value) { value.SetString("some text"); }},
        {'X', "b2:a\xff ", [](Value& value) { value.SetBlob(kBytes); }},
        {'G', "eGrade.-4 ", [](Value& value) { value.SetEnum(Samples::GradeRecord(), -4); }},
    };
    for (const auto& leaf : kLeaves) {
      if (leaf.edit != edit) continue;
      leaf.set(*node.value);
      *node.model = Model{leaf.description};
    }
  }

  // A move into a node is a copy; into a root of another tree it leaves an empty value.
  void CopyMarked(bool moves) {
    const Node source = Find(&marked_);
    const Node target = Find(&here_);
    if (source.model->Count() + pairs_[here_.tree].model.Count() > kMaxValues) return;
    Model copy = *source.model;
    if (moves) {
      *target.value = std::move(*source.value);
      if (here_.steps.empty() && marked_.tree != here_.tree) *source.model = Model();
    } else {
      *target.value = *source.value;
    }
    *target.model = std::move(copy);
  }

  void CopyTwice() {
    BindingProperty& tree = pairs_[here_.tree].tree;
    const BindingProperty copy = tree;
    Require(copy == tree, "a copy equals its tree");
    tree = BindingProperty(copy);
    Require(copy == tree, "a copy that is moved equals its tree");
    here_.steps.clear();
  }

  std::array<Pair, 2> pairs_;
  Place here_;
  Place marked_;
};

}  // namespace

void CheckTreeEdits(std::string_view input) {
  Editor editor;
  while (!input.empty()) {
    editor.Edit(&input);
    editor.Check();
  }
}

}  // namespace Kest::Fuzz
