// The numbers of value kinds and native types, and the names they carry in messages and help.
// All of it is constant: any thread may use it.
#pragma once

#include <cstdint>
#include <string_view>

namespace Kest {

struct TypeRecord;

// What a BindingProperty holds. The numbers are stored: never renumber.
enum class BindingKind : uint8_t {
  kEmpty = 0,
  kBool = 1,
  kSigned = 2,
  kUnsigned = 3,
  kFloat = 4,
  kString = 5,
  kBlob = 6,
  kEnum = 7,
  kCollection = 8,
  kStructure = 9,
};

// The family of a native type. The numbers are stored: never renumber.
enum class TypeId : uint8_t {
  kNone = 0,
  kBool = 1,
  kInt8 = 2,
  kUint8 = 3,
  kInt16 = 4,
  kUint16 = 5,
  kInt32 = 6,
  kUint32 = 7,
  kInt64 = 8,
  kUint64 = 9,
  kFloat = 10,
  kDouble = 11,
  kString = 12,
  kObject = 13,  // a free-form BindingProperty
  kBlob = 14,
  kVector = 15,
  kEnum = 16,
  kStruct = 17,
  kCallback = 18,
  kMap = 19,
};

// The type of a field, argument, result or event payload.
struct TypeIdentifier {
  TypeId id = TypeId::kNone;
  TypeId elementId = TypeId::kNone;    // kVector and kMap only
  const TypeRecord* record = nullptr;  // of the enum or struct, or of such an element

  // What each element of a vector or map is.
  TypeIdentifier Element() const { return {elementId, TypeId::kNone, record}; }

  friend bool operator==(const TypeIdentifier&, const TypeIdentifier&) = default;
};

// "empty", "bool", ... "structure"; empty for a number outside 0..9.
std::string_view KindName(uint8_t kind);
std::string_view KindName(BindingKind kind);

// "bool", "int8", ... "map"; empty for a number outside 1..19.
std::string_view TypeIdName(uint8_t id);
std::string_view TypeIdName(TypeId id);

// The name of a node tag of the free-form document: "bool" for 1 to "structure" for 10, where tags
// 5 and 6 are both "string" and 7 and 8 both "blob"; empty for any other tag.
std::string_view DocumentTagName(uint8_t tag);

}  // namespace Kest
