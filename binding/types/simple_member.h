// Members of native structures whose values need no conversion: bools, integers, strings and
// enumerations, read where they lie.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>

#include "binding/types/type_record.h"

namespace Kest {

template <typename T>
T LoadNative(const void* at) {
  T value;
  std::memcpy(&value, at, sizeof(value));
  return value;
}

// Hands the value of the member at `at` to the call of `take` for its kind: with a bool, an
// int64_t, a uint64_t, a const std::string&, or the type of an enumeration and a number. Returns
// what `take` returns, and false, without a call, for a member of another kind.
template <typename Take>
inline bool TakeSimpleMember(const FieldRecord& field, const void* at, Take&& take) {
  switch (field.storedAs) {
    case TypeId::kBool:
      return take(LoadNative<bool>(at));
    case TypeId::kInt32:
      return take(int64_t{LoadNative<int32_t>(at)});
    case TypeId::kUint32:
      return take(uint64_t{LoadNative<uint32_t>(at)});
    case TypeId::kInt64:
      return take(LoadNative<int64_t>(at));
    case TypeId::kUint64:
      return take(LoadNative<uint64_t>(at));
    case TypeId::kString:
      return take(*static_cast<const std::string*>(at));
    case TypeId::kEnum:
      return field.type.record != nullptr && take(*field.type.record, LoadNative<int32_t>(at));
    default:
      return false;
  }
}

// The members from number `*next` on that are simple and can be written with their names; goes past
// them.
template <typename Write>
inline void WalkSimpleMembers(const TypeRecord& type, const void* object, size_t* next,
                              Write&& write) {
  const FieldRecord* const fields = type.fields.data();
  const FieldRecord* const end = fields + type.fields.size();
  const FieldRecord* field = fields + *next;
  for (; field != end && !field->jsonMember.empty(); ++field) {
    const void* const at = static_cast<const char*>(object) + field->offset;
    const auto take = [&](const auto&... value) { return write(*field, value...); };
    if (!TakeSimpleMember(*field, at, take)) break;
  }
  *next = static_cast<size_t>(field - fields);
}

}  // namespace Kest
