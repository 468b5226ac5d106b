// The constant accessor object of each native type.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>

#include "binding/convert/assign_composite.h"
#include "binding/convert/assign_scalar.h"
#include "binding/convert/native_type.h"
#include "binding/convert/read_ahead.h"
#include "binding/convert/read_value.h"
#include "binding/convert/value_accessor.h"

namespace Kest {

// The converter of T; it lives as long as the program.
template <typename T>
const ValueAccessor& NativeAccessor();

namespace Native {

// What a vector reserves at most before its elements have been looked at.
inline constexpr size_t kMostReservedBytes = size_t{16} * 1024;

template <typename T>
class Accessor;

// bool, numbers, std::string, blobs, enumerations and BindingProperty: one overload each.
template <BoundScalar T>
class Accessor<T> final : public ValueAccessor {
 public:
  void Assign(ConversionContext& context, const NamedType& as, const BindingProperty& input,
              void* target) const override {
    if constexpr (std::is_enum_v<T>) {
      if (!context.Ok()) return;
      int32_t value = 0;
      AssignEnumeration(context, as.name, input, as.type.record, &value);
      if (context.Ok()) *static_cast<T*>(target) = static_cast<T>(value);
    } else {
      if (context.Ok() && TryAssignSimple(input, static_cast<T*>(target))) return;
      AssignOther(context, as, input, target);
    }
  }
  void Read(ConversionContext& context, const void* value, const TypeIdentifier& type,
            ValueWriter& writer) const override {
    if (!context.Ok()) return;
    if constexpr (std::is_enum_v<T>) {
      ReadEnumeration(context, static_cast<int32_t>(*static_cast<const T*>(value)), type.record,
                      writer);
    } else {
      ReadScalar(context, *static_cast<const T*>(value), writer);
    }
  }

 private:
  // Apart, with the parameters of Assign, so that the simple case moves none of them.
  [[gnu::noinline, gnu::cold]] void AssignOther(ConversionContext& context, const NamedType& as,
                                                const BindingProperty& input, void* target) const {
    AssignScalar(context, as.name, input, static_cast<T*>(target));
  }
};

// A registered structure: its record says what to do.
template <BoundStruct T>
class Accessor<T> final : public ValueAccessor {
 public:
  void Assign(ConversionContext& context, const NamedType& as, const BindingProperty& input,
              void* target) const override {
    AssignStructure(context, as.name, input, as.type.record, target);
  }
  void Read(ConversionContext& context, const void* value, const TypeIdentifier& type,
            ValueWriter& writer) const override {
    ReadStructure(context, value, type.record, writer);
  }
};

// A shared item. It is assigned as a fresh one; none at all reads as the empty kind.
template <typename T>
class Accessor<std::shared_ptr<const T>> final : public ValueAccessor {
 public:
  void Assign(ConversionContext& context, const NamedType& as, const BindingProperty& input,
              void* target) const override {
    auto item = std::make_shared<T>();
    NativeAccessor<T>().Assign(context, as, input, item.get());
    if (context.Ok()) *static_cast<std::shared_ptr<const T>*>(target) = std::move(item);
  }
  void Read(ConversionContext& context, const void* value, const TypeIdentifier& type,
            ValueWriter& writer) const override {
    const auto& item = *static_cast<const std::shared_ptr<const T>*>(value);
    if (item != nullptr) {
      NativeAccessor<T>().Read(context, item.get(), type, writer);
    } else if (context.Ok() && !writer.Null()) {
      context.Fail(writer.ErrorMessage());
    }
  }
};

template <BoundVector T>
class Accessor<T> final : public ValueAccessor {
  using Item = typename T::value_type;
  static_assert(!std::is_same_v<Item, bool>,
                "use a vector of int32_t, or of a structure that holds the bool");

 public:
  void Assign(ConversionContext& context, const NamedType& as, const BindingProperty& input,
              void* target) const override {
    if (!context.Ok()) return;
    T& items = *static_cast<T*>(target);
    items.clear();
    if (!ExpectCollection(context, as.name, input)) return;
    const NamedType element = as.Element();
    if constexpr (std::is_arithmetic_v<Item>) {
      items.resize(input.Size());  // less memory than the elements take in the tree
      Item* item = items.data();
      for (const BindingProperty& number : input.AllElements()) {
        if (!TryAssignSimple(number, item)) {
          NativeAccessor<Item>().Assign(context, element, number, item);
          if (!context.Ok()) return items.resize(static_cast<size_t>(item + 1 - items.data()));
        }
        ++item;
      }
    } else {
      // Beyond a little they grow as elements arrive: what is refused has cost no memory ahead.
      items.reserve(std::min(input.Size(), 1 + kMostReservedBytes / sizeof(Item)));
      for (size_t i = 0; i < input.Size() && context.Ok(); ++i) {
        NativeAccessor<Item>().Assign(context, element, input.Element(i), &items.emplace_back());
      }
    }
  }
  void Read(ConversionContext& context, const void* value, const TypeIdentifier& type,
            ValueWriter& writer) const override {
    if (!context.Ok()) return;
    const T& items = *static_cast<const T*>(value);
    if (!writer.BeginCollection(items.size())) return context.Fail(writer.ErrorMessage());
    const TypeIdentifier element = type.Element();
    ReadAhead<T> ahead(items, element.record);
    for (const Item& item : items) {
      ahead.Step();
      NativeAccessor<Item>().Read(context, &item, element, writer);
      if (!context.Ok()) return;
    }
    if (!writer.EndCollection()) context.Fail(writer.ErrorMessage());
  }
};

template <BoundMap T>
class Accessor<T> final : public ValueAccessor {
  using Item = typename T::mapped_type;

 public:
  void Assign(ConversionContext& context, const NamedType& as, const BindingProperty& input,
              void* target) const override {
    if (!context.Ok()) return;
    T& items = *static_cast<T*>(target);
    items.clear();
    if (!ExpectMap(context, as.name, input)) return;
    const NamedType element = as.Element();
    for (size_t i = 0; i < input.Size() && context.Ok(); ++i) {
      // Names differ, and what was written from a sorted map is sorted.
      const auto entry = items.try_emplace(items.end(), std::string(input.MemberName(i)));
      NativeAccessor<Item>().Assign(context, element, input.MemberValue(i), &entry->second);
    }
  }
  void Read(ConversionContext& context, const void* value, const TypeIdentifier& type,
            ValueWriter& writer) const override {
    if (!context.Ok()) return;
    const T& items = *static_cast<const T*>(value);
    if (!writer.BeginStructure(items.size())) return context.Fail(writer.ErrorMessage());
    const TypeIdentifier element = type.Element();
    ReadAhead<T> ahead(items, element.record);
    for (const auto& [key, item] : items) {
      ahead.Step();
      if (!writer.Member(key)) return context.Fail(writer.ErrorMessage());
      NativeAccessor<Item>().Read(context, &item, element, writer);
      if (!context.Ok()) return;
    }
    if (!writer.EndStructure()) context.Fail(writer.ErrorMessage());
  }
};

}  // namespace Native

template <typename T>
const ValueAccessor& NativeAccessor() {
  static constinit const Native::Accessor<T> kAccessor;
  return kAccessor;
}

}  // namespace Kest
