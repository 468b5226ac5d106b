// Registration of native structures and enumerations, as chains that read like the type:
//
//   DefineStruct<PlayerLoot>(registry, "PlayerLoot", "Kest::Client::Loot::Api")
//       .Fields<&PlayerLoot::lootName, &PlayerLoot::count>()
//       .Field<&PlayerLoot::type>(kRequired, "The family of the item", {"inventory"})
//       .Field<&PlayerLoot::className>("class");
//   DefineEnum<LootRarity>(registry, "LootRarity", "Kest::Client::Loot::Api")
//       .Enumerator("Default", LootRarity::kDefault);
//
// A field has its member's name unless another is given. Field order is wire order. Register
// enumerations first, then structures before those that hold them. Members need initialisers: a
// member the input lacks keeps what the target holds.
// Threads: one thread, before routes and events are bound.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <type_traits>
#include <utility>

#include "binding/convert/native_accessor.h"
#include "binding/convert/native_type.h"
#include "binding/types/static_type.h"
#include "binding/types/type_registry.h"

namespace Kest {

namespace Native {

template <typename M>
struct MemberOf;
template <typename C, typename V>
struct MemberOf<V C::*> {
  using Class = C;
  using Value = V;
};

// Where `member` lies in an Object. Nothing is read or written: only addresses are compared.
template <typename Object, typename Value, typename Class>
size_t OffsetOf(Value Class::*member) {
  alignas(Object) static const char kStorage[sizeof(Object)] = {};
  const auto* object = reinterpret_cast<const Object*>(kStorage);
  return static_cast<size_t>(reinterpret_cast<const char*>(&(object->*member)) - kStorage);
}

// Whether Value holds an Object, directly or as an element.
template <typename Object, typename Value>
constexpr bool Holds() {
  if constexpr (requires { typename ElementOf<Value>::Type; }) {
    return std::is_same_v<typename ElementOf<Value>::Type, Object>;
  } else {
    return std::is_same_v<typename Shown<Value>::Type, Object>;
  }
}

// What structures and enumerations have in common; Definition is the class of the chain.
template <typename Definition>
class DefineType {
 public:
  Definition& Description(std::string_view text) {
    builder_.SetDescription(text);
    return static_cast<Definition&>(*this);
  }
  Definition& Tag(std::string_view tag) { return Tags({tag}); }
  Definition& Tags(std::initializer_list<std::string_view> tags) {
    builder_.AddTags(tags);
    return static_cast<Definition&>(*this);
  }

 protected:
  DefineType(TypeRegistry& registry, std::string_view name, std::string_view nameSpace, size_t size,
             const TypeKey& key, TypeKind kind)
      : builder_(registry.RegisterType(name, size, key, kind)) {
    builder_.SetNameSpace(nameSpace);
  }

  TypeBuilder builder_;
};

}  // namespace Native

template <typename T>
class DefineStruct : public Native::DefineType<DefineStruct<T>> {
  static_assert(std::is_class_v<T>, "DefineStruct takes a structure; enumerations use DefineEnum");

 public:
  DefineStruct(TypeRegistry& registry, std::string_view name, std::string_view nameSpace = {})
      : Native::DefineType<DefineStruct>(registry, name, nameSpace, sizeof(T), StaticType::Key<T>(),
                                         TypeKind::kStructure),
        registry_(registry) {}

  // Adds the next members in wire order.
  template <auto... members>
  DefineStruct& Fields(FieldPresence presence = kOptional) {
    this->builder_.Expect(sizeof...(members));
    (Field<members>(presence), ...);
    return *this;
  }
  template <auto member>
  DefineStruct& Field(FieldPresence presence = kOptional, std::string_view description = {},
                      std::initializer_list<std::string_view> tags = {}) {
    return Field<member>(StaticType::MemberName<member>(), presence, description, tags);
  }
  template <auto member>
  DefineStruct& Field(std::string_view name, FieldPresence presence = kOptional,
                      std::string_view description = {},
                      std::initializer_list<std::string_view> tags = {}) {
    static_assert(std::is_member_object_pointer_v<decltype(member)>,
                  "Field takes a data member: .Field<&Type::member>()");
    using Value = typename Native::MemberOf<decltype(member)>::Value;
    static_assert(std::is_base_of_v<typename Native::MemberOf<decltype(member)>::Class, T>,
                  "the member belongs to another structure");
    static_assert(!Native::Holds<T, Value>(),
                  "a structure cannot hold itself: make the member a BindingProperty");
    FieldRecord field;
    field.name = name;
    field.description = description;
    field.offset = Native::OffsetOf<T>(member);
    field.staticKey = &StaticType::Key<typename Native::Shown<Value>::Type>();
    field.type = IdentifyType<Value>(registry_);
    field.storedAs = Native::IdOf<Value>();
    field.tags = {tags.begin(), tags.size()};
    field.optional = presence == kOptional;
    field.accessor = &NativeAccessor<Value>();
    this->builder_.AddField(field);
    return *this;
  }

 private:
  TypeRegistry& registry_;
};

template <typename T>
class DefineEnum : public Native::DefineType<DefineEnum<T>> {
  static_assert(std::is_enum_v<T> && std::is_same_v<std::underlying_type_t<T>, int32_t>,
                "declare the enumeration as `enum class X : int32_t`");

 public:
  DefineEnum(TypeRegistry& registry, std::string_view name, std::string_view nameSpace = {})
      : Native::DefineType<DefineEnum>(registry, name, nameSpace, sizeof(T), StaticType::Key<T>(),
                                       TypeKind::kEnumeration) {}

  DefineEnum& Enumerator(std::string_view name, T value, std::string_view description = {}) {
    this->builder_.AddEnumerator(name, static_cast<int32_t>(value), description);
    return *this;
  }
};

}  // namespace Kest
