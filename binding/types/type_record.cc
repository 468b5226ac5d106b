#include "binding/types/type_record.h"

namespace Kest {

const EnumeratorRecord* TypeRecord::FindEnumerator(int32_t value) const {
  for (const EnumeratorRecord& enumerator : enumerators) {
    if (enumerator.value == value) return &enumerator;
  }
  return nullptr;
}

const EnumeratorRecord* TypeRecord::FindEnumerator(std::string_view enumeratorName) const {
  for (const EnumeratorRecord& enumerator : enumerators) {
    if (enumerator.name == enumeratorName) return &enumerator;
  }
  return nullptr;
}

std::string_view TypeName(const TypeIdentifier& type) {
  const bool isRegistered = type.id == TypeId::kEnum || type.id == TypeId::kStruct;
  return isRegistered && type.record != nullptr ? type.record->name : TypeIdName(type.id);
}

std::string FullName(std::string_view nameSpace, std::string_view name) {
  std::string full(nameSpace);
  if (!full.empty()) full += '.';
  full += name;
  return full;
}

}  // namespace Kest
