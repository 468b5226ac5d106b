// Which native C++ types can be bound, and what family each belongs to:
//   bool, int8_t .. uint64_t, float, double, std::string, std::vector<uint8_t> (a blob),
//   std::vector<T>, string-keyed maps (std::map, std::unordered_map), BindingProperty ("object"),
//   enumerations over int32_t, other classes as registered structures, and
//   std::shared_ptr<const T>, which stands for T so that containers can share equal items.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "binding/tree/binding_property.h"
#include "binding/types/static_type.h"
#include "binding/types/type_id.h"
#include "binding/types/type_registry.h"

namespace Kest {

namespace Native {

template <typename T>
struct IsVector : std::false_type {};
template <typename T, typename A>
struct IsVector<std::vector<T, A>> : std::true_type {};

template <typename T>
struct IsShared : std::false_type {};
template <typename T>
struct IsShared<std::shared_ptr<const T>> : std::true_type {};

template <typename T>
concept StringMap = requires(T map) {
  map.at(std::string());  // a multimap has none
  requires std::is_same_v<typename T::key_type, std::string>;
};

template <typename T, typename... Types>
concept OneOf = (std::is_same_v<T, Types> || ...);

template <typename T>
inline constexpr bool kIsBlob = std::is_same_v<T, std::vector<uint8_t>>;

// A shared item is bound as what it points to.
template <typename T>
struct Shown {
  using Type = T;
};
template <typename T>
struct Shown<std::shared_ptr<const T>> {
  using Type = T;
};

template <typename T>
constexpr TypeId IntegerId() {
  static_assert(OneOf<T, int8_t, uint8_t, int16_t, uint16_t, int32_t, uint32_t, int64_t, uint64_t>,
                "use int8_t .. uint64_t of <cstdint>: other integers and characters have no size "
                "that is the same everywhere, or are no numbers");
  constexpr TypeId kSignedIds[] = {TypeId::kNone, TypeId::kInt8,  TypeId::kInt16,
                                   TypeId::kNone, TypeId::kInt32, TypeId::kNone,
                                   TypeId::kNone, TypeId::kNone,  TypeId::kInt64};
  constexpr TypeId kUnsignedIds[] = {TypeId::kNone, TypeId::kUint8,  TypeId::kUint16,
                                     TypeId::kNone, TypeId::kUint32, TypeId::kNone,
                                     TypeId::kNone, TypeId::kNone,   TypeId::kUint64};
  return std::is_signed_v<T> ? kSignedIds[sizeof(T)] : kUnsignedIds[sizeof(T)];
}

template <typename T>
constexpr TypeId StructId() {
  static_assert(!std::is_floating_point_v<T>, "use double");
  static_assert(std::is_class_v<T> || std::is_floating_point_v<T>,
                "only values can be bound: use a class, or std::shared_ptr<const T>");
  constexpr std::string_view kName = StaticType::Name<T>();
  static_assert(!kName.starts_with("std::optional<"),
                "use the plain type: a member the input lacks keeps its initial value");
  static_assert(!kName.starts_with("std::basic_string_view<"),
                "use std::string: a bound value owns its characters");
  static_assert(!kName.starts_with("std::array<"), "use std::vector: the input decides the size");
  static_assert(!kName.starts_with("std::shared_ptr<"),
                "use std::shared_ptr<const T>: shared items never change");
  static_assert(!kName.starts_with("std::map<") && !kName.starts_with("std::unordered_map<"),
                "use std::string for the keys of a map: members have names");
  static_assert(!kName.starts_with("std::"),
                "of the standard library only string, vector, map, unordered_map and "
                "shared_ptr<const T> can be bound: wrap others in a structure of your own");
  return TypeId::kStruct;
}

// kNone for a shared item: what it points to is what is bound.
template <typename T>
constexpr TypeId IdOf() {
  static_assert(!std::is_const_v<T>, "drop the const: reading a value assigns its members");
  if constexpr (std::is_same_v<T, bool>) {
    return TypeId::kBool;
  } else if constexpr (std::is_integral_v<T>) {
    return IntegerId<T>();
  } else if constexpr (std::is_same_v<T, float>) {
    return TypeId::kFloat;
  } else if constexpr (std::is_same_v<T, double>) {
    return TypeId::kDouble;
  } else if constexpr (std::is_same_v<T, std::string>) {
    return TypeId::kString;
  } else if constexpr (std::is_same_v<T, BindingProperty>) {
    return TypeId::kObject;
  } else if constexpr (kIsBlob<T>) {
    return TypeId::kBlob;
  } else if constexpr (IsShared<T>::value) {
    return TypeId::kNone;
  } else if constexpr (IsVector<T>::value) {
    return TypeId::kVector;
  } else if constexpr (StringMap<T>) {
    return TypeId::kMap;
  } else if constexpr (std::is_enum_v<T>) {
    static_assert(std::is_same_v<std::underlying_type_t<T>, int32_t>,
                  "declare the enumeration as `enum class X : int32_t`");
    return TypeId::kEnum;
  } else {
    return StructId<T>();
  }
}

template <typename T>
concept BoundStruct = (IdOf<T>() == TypeId::kStruct);
template <typename T>
concept BoundVector = (IdOf<T>() == TypeId::kVector);
template <typename T>
concept BoundMap = (IdOf<T>() == TypeId::kMap);
template <typename T>
concept BoundScalar = !IsShared<T>::value && !BoundStruct<T> && !BoundVector<T> && !BoundMap<T>;

template <typename T>
inline constexpr bool kIsRegisterable = IdOf<typename Shown<T>::Type>() == TypeId::kEnum
                                        || IdOf<typename Shown<T>::Type>() == TypeId::kStruct;

// The element type of a vector or map.
template <typename T>
struct ElementOf {};
template <typename T, typename A>
struct ElementOf<std::vector<T, A>> {
  using Type = typename Shown<T>::Type;
};
template <StringMap T>
struct ElementOf<T> {
  using Type = typename Shown<typename T::mapped_type>::Type;
};

}  // namespace Native

// The registered identity of T; the record is null while T (or its element) is not registered.
template <typename T>
TypeIdentifier IdentifyType(const TypeRegistry& registry = TypeRegistry::Process()) {
  using Shown = typename Native::Shown<T>::Type;
  TypeIdentifier type;
  type.id = Native::IdOf<Shown>();
  if constexpr (Native::IdOf<Shown>() == TypeId::kVector || Native::IdOf<Shown>() == TypeId::kMap) {
    using Element = typename Native::ElementOf<Shown>::Type;
    constexpr TypeId kElement = Native::IdOf<Element>();
    static_assert(
        kElement != TypeId::kVector && kElement != TypeId::kMap,
        "a vector or map of vectors or maps has no type identifier: wrap the inner one in "
        "a registered structure");
    type.elementId = kElement;
    if constexpr (Native::kIsRegisterable<Element>) {
      type.record = registry.FindByKey(StaticType::Key<Element>());
    }
  } else if constexpr (Native::kIsRegisterable<Shown>) {
    type.record = registry.FindByKey(StaticType::Key<Shown>());
  }
  return type;
}

}  // namespace Kest
