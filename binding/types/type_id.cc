#include "binding/types/type_id.h"

#include <array>
#include <cstddef>

namespace Kest {
namespace {

// Indexed by BindingKind.
constexpr std::array<std::string_view, 10> kKindNames = {
    "empty",  "bool", "signed", "unsigned",   "float",
    "string", "blob", "enum",   "collection", "structure"};
static_assert(kKindNames.size() == static_cast<size_t>(BindingKind::kStructure) + 1);

// Indexed by TypeId.
constexpr std::array<std::string_view, 20> kTypeIdNames = {
    "",       "bool",   "int8",   "uint8",  "int16",    "uint16", "int32",
    "uint32", "int64",  "uint64", "float",  "double",   "string", "object",
    "blob",   "vector", "enum",   "struct", "callback", "map"};
static_assert(kTypeIdNames.size() == static_cast<size_t>(TypeId::kMap) + 1);

// Indexed by tag. Strings and blobs have two storage forms each, hence two tags of one name.
constexpr std::array<std::string_view, 11> kDocumentTagNames = {
    "",       "bool", "signed", "unsigned",   "float",    "string",
    "string", "blob", "blob",   "collection", "structure"};

template <size_t size>
std::string_view NameAt(const std::array<std::string_view, size>& names, uint8_t index) {
  return index < size ? names[index] : std::string_view();
}

}  // namespace

std::string_view KindName(uint8_t kind) {
  return NameAt(kKindNames, kind);
}
std::string_view KindName(BindingKind kind) {
  return KindName(static_cast<uint8_t>(kind));
}

std::string_view TypeIdName(uint8_t id) {
  return NameAt(kTypeIdNames, id);
}
std::string_view TypeIdName(TypeId id) {
  return TypeIdName(static_cast<uint8_t>(id));
}

std::string_view DocumentTagName(uint8_t tag) {
  return NameAt(kDocumentTagNames, tag);
}

}  // namespace Kest
