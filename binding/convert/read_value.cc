#include "binding/convert/read_value.h"

#include "binding/convert/conversion_messages.h"
#include "binding/convert/value_accessor.h"
#include "binding/types/type_record.h"

namespace Kest {

void ReadEnumeration(ConversionContext& context, int32_t value, const TypeRecord* type,
                     ValueWriter& writer) {
  if (!context.Ok()) return;
  if (type == nullptr) return context.Fail(kReadUnregistered);
  CheckWritten(context, writer.Enum(*type, value), writer);
}

void ReadStructure(ConversionContext& context, const void* value, const TypeRecord* type,
                   ValueWriter& writer) {
  if (!context.Ok()) return;
  if (type == nullptr || type->kind != TypeKind::kStructure) return context.Fail(kReadUnregistered);
  if (!writer.BeginStructure(type->fields.size())) return context.Fail(writer.ErrorMessage());
  for (size_t next = 0;; ++next) {
    CheckWritten(context, writer.SimpleMembers(*type, value, &next), writer);
    if (!context.Ok()) return;
    if (next == type->fields.size()) break;
    const FieldRecord& field = type->fields[next];
    CheckWritten(context, writer.Member(field.name), writer);
    if (!context.Ok()) return;
    field.accessor->Read(context, static_cast<const char*>(value) + field.offset, field.type,
                         writer);
    if (!context.Ok()) return;
  }
  CheckWritten(context, writer.EndStructure(), writer);
}

}  // namespace Kest
