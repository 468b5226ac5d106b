#include "binding/convert/assign_composite.h"

#include "binding/convert/conversion_messages.h"
#include "binding/convert/value_accessor.h"
#include "binding/tree/tree_nodes.h"
#include "binding/types/type_record.h"
#include "log/positional_format.h"

namespace Kest {

void AssignStructure(ConversionContext& context, std::string_view path,
                     const BindingProperty& input, const TypeRecord* type, void* target) {
  if (!context.Ok()) return;
  if (input.IsEmpty()) return context.Fail(Format(kValueRequired, path));
  if (type == nullptr || type->kind != TypeKind::kStructure) {
    return context.Fail(Format(kUnregistered, path));
  }
  if (input.kind() != BindingKind::kStructure) {
    return context.Fail(Format(kNotAStructure, path, type->name));
  }
  size_t place = 0;  // where input in field order holds the next member
  for (const FieldRecord& field : type->fields) {
    const BindingProperty* member = TreeNodes::FindMember(input, field.name, &place);
    if (member != nullptr && !member->IsEmpty()) {
      field.accessor->Assign(context, {field.name, field.type}, *member,
                             static_cast<char*>(target) + field.offset);
      if (!context.Ok()) return;
    } else if (!field.optional) {
      return context.Fail(Format(kFieldRequired, path, type->name, field.name));
    }
  }
}

bool ExpectCollection(ConversionContext& context, std::string_view path,
                      const BindingProperty& input) {
  if (input.kind() != BindingKind::kCollection) context.Fail(Format(kNotACollection, path));
  return context.Ok();
}

bool ExpectMap(ConversionContext& context, std::string_view path, const BindingProperty& input) {
  if (input.kind() != BindingKind::kStructure) context.Fail(Format(kNotAStructure, path, "map"));
  return context.Ok();
}

}  // namespace Kest
