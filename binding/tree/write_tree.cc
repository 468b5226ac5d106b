#include <vector>

#include "binding/tree/binding_property.h"
#include "binding/tree/value_writer.h"

namespace Kest {
namespace {

// A container on the way from the root, and the entry to visit next.
struct Step {
  const BindingProperty* container;
  size_t next;
};

bool IsContainer(const BindingProperty& value) {
  return value.kind() == BindingKind::kCollection || value.kind() == BindingKind::kStructure;
}

bool WriteLeaf(const BindingProperty& value, ValueWriter& writer) {
  switch (value.kind()) {
    case BindingKind::kBool:
      return writer.Bool(value.AsBool());
    case BindingKind::kSigned:
      return writer.Signed(value.AsSigned());
    case BindingKind::kUnsigned:
      return writer.Unsigned(value.AsUnsigned());
    case BindingKind::kFloat:
      return writer.Float(value.AsFloat());
    case BindingKind::kString:
      return writer.String(value.AsString());
    case BindingKind::kBlob:
      return writer.Blob(value.AsBlob());
    case BindingKind::kEnum:
      return writer.Enum(value.EnumType(), value.EnumValue());
    default:
      return writer.Null();
  }
}

bool Begin(const BindingProperty& container, ValueWriter& writer) {
  return container.kind() == BindingKind::kStructure ? writer.BeginStructure(container.Size())
                                                     : writer.BeginCollection(container.Size());
}

bool End(const BindingProperty& container, ValueWriter& writer) {
  return container.kind() == BindingKind::kStructure ? writer.EndStructure()
                                                     : writer.EndCollection();
}

}  // namespace

bool WriteTree(const BindingProperty& tree, ValueWriter& writer) {
  if (!IsContainer(tree)) return WriteLeaf(tree, writer);
  std::vector<Step> path;
  path.push_back({&tree, 0});
  if (!Begin(tree, writer)) return false;
  while (!path.empty()) {
    Step& step = path.back();
    const BindingProperty& container = *step.container;
    if (step.next == container.Size()) {
      if (!End(container, writer)) return false;
      path.pop_back();
      continue;
    }
    const size_t entry = step.next++;
    const bool isStructure = container.kind() == BindingKind::kStructure;
    if (isStructure && !writer.Member(container.MemberName(entry))) return false;
    const BindingProperty& child =
        isStructure ? container.MemberValue(entry) : container.Element(entry);
    if (IsContainer(child)) {
      if (!Begin(child, writer)) return false;
      path.push_back({&child, 0});
    } else if (!WriteLeaf(child, writer)) {
      return false;
    }
  }
  return true;
}

}  // namespace Kest
