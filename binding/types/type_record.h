// What the registry knows about types, events and functions. Help is written from these records.
// Threads:  a record is built by one registration chain and immutable afterwards; registration ends
//           before routes and events are bound, so readers need no lock.
// Lifetime: as long as the registry that owns it (for the process's own: for ever), with all texts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "binding/types/static_type.h"
#include "binding/types/type_id.h"

namespace Kest {

class TypeRegistry;
class ValueAccessor;

enum class TypeKind : uint8_t { kStructure = 0, kEnumeration = 1 };

// Whether a member may be absent from the input. Absent optional members keep what the target
// holds.
enum class FieldPresence : uint8_t { kOptional, kRequired };
inline constexpr FieldPresence kOptional = FieldPresence::kOptional;
inline constexpr FieldPresence kRequired = FieldPresence::kRequired;

// One member of a structure, in wire order.
struct FieldRecord {
  std::string_view name;
  std::string_view description;
  size_t offset = 0;                   // of the member inside the native structure
  const TypeKey* staticKey = nullptr;  // of the member's native type
  TypeIdentifier type;
  std::span<const std::string_view> tags;
  bool optional = true;
  const ValueAccessor* accessor = nullptr;  // constant object, lives as long as the program

  // For those who read members where they lie.
  TypeId storedAs = TypeId::kNone;  // the family of the member itself; kNone: a pointer to such
  // The name as a part of ,"name": with 16 bytes more after it that may be read. Empty where the
  // name has to be written otherwise, or is unusually long.
  std::string_view jsonMember = {};
};

struct EnumeratorRecord {
  std::string_view name;
  std::string_view description;
  int32_t value = 0;
};

// A registered structure (has fields) or enumeration (has enumerators).
struct TypeRecord {
  // Its lists are in `memory`, which outlives it.
  explicit TypeRecord(std::pmr::memory_resource* memory = std::pmr::get_default_resource())
      : tags(memory), fields(memory), enumerators(memory) {}

  TypeKind kind = TypeKind::kStructure;
  size_t size = 0;        // of the native type, in bytes
  std::string_view name;  // on the wire and in messages, without namespace
  const TypeKey* staticKey = nullptr;
  std::string_view nameSpace;
  std::string_view description;
  std::pmr::vector<std::string_view> tags;
  std::pmr::vector<FieldRecord> fields;
  std::pmr::vector<EnumeratorRecord> enumerators;
  const TypeRegistry* registry = nullptr;

  // Null when there is none; where several share a value, the first.
  const EnumeratorRecord* FindEnumerator(int32_t value) const;
  const EnumeratorRecord* FindEnumerator(std::string_view enumeratorName) const;
};

struct EventRecord {
  std::string name;
  std::string nameSpace;
  std::string description;
  TypeIdentifier payload;
  std::vector<std::string> tags;
};

struct ArgumentRecord {
  std::string name;
  std::string description;
  TypeIdentifier type;
  bool optional = false;
};

struct FunctionRecord {
  std::string name;
  std::string nameSpace;
  std::string description;
  std::string help;
  std::vector<ArgumentRecord> arguments;
  TypeIdentifier returns;
  bool threadSafe = false;
  TypeIdentifier async;  // what an asynchronous function delivers later; kNone for all others
  std::vector<std::string> tags;
};

// "int32", "vector", or the registered name of an enumeration or structure; of a vector's or map's
// element: TypeName(type.Element()). Empty for no type.
std::string_view TypeName(const TypeIdentifier& type);

// What a function is invoked by: "$builtin.Help", or the bare name outside of any namespace.
std::string FullName(std::string_view nameSpace, std::string_view name);

}  // namespace Kest
