// Types and helpers shared by the tests of the binding layer.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "binding/convert/define_struct.h"
#include "binding/json/json_adapter.h"

namespace Kest::Samples {

enum class Grade : int32_t { kPlain = 0, kEpic = 1, kFabled = -4 };

struct Part {
  std::string name;
  int32_t count = 7;
  friend bool operator==(const Part&, const Part&) = default;
};

struct Whole {
  Part part;
  std::vector<Part> parts;
  std::map<std::string, Part> byName;
  std::unordered_map<std::string, std::shared_ptr<const Part>> shared;
  std::vector<std::string> words;
  std::vector<uint8_t> bytes;
  BindingProperty anything;
  Grade grade = Grade::kEpic;
  double ratio = 0.5;
  bool flag = false;
  uint64_t id = 3;
};

// Never registered.
struct Stranger {
  int32_t x = 0;
};

inline const TypeRegistry& Registry() {
  static const TypeRegistry& registry = []() -> TypeRegistry& {
    static TypeRegistry types;
    DefineEnum<Grade>(types, "Grade", "Kest::Samples")
        .Enumerator("Plain", Grade::kPlain)
        .Enumerator("Epic", Grade::kEpic)
        .Enumerator("Fabled", Grade::kFabled);
    DefineStruct<Part>(types, "Part", "Kest::Samples")
        .Field<&Part::name>(kRequired)
        .Field<&Part::count>();
    DefineStruct<Whole>(types, "Whole", "Kest::Samples")
        .Fields<&Whole::part, &Whole::parts, &Whole::byName, &Whole::shared, &Whole::words,
                &Whole::bytes, &Whole::anything, &Whole::grade, &Whole::ratio, &Whole::flag,
                &Whole::id>();
    return types;
  }();
  return registry;
}

inline const TypeRecord& GradeRecord() {
  return *Registry().FindByName("Grade");
}

// Short names for tables.
template <typename T>
using Make = BindingProperty (*)(T);
inline constexpr Make<bool> Bool = &BindingProperty::FromBool;
inline constexpr Make<int64_t> Signed = &BindingProperty::FromSigned;
inline constexpr Make<uint64_t> Unsigned = &BindingProperty::FromUnsigned;
inline constexpr Make<double> Float = &BindingProperty::FromFloat;
inline constexpr auto Text = &BindingProperty::FromString;
inline BindingProperty Blob(std::string_view bytes) {
  return BindingProperty::FromBlob({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()});
}
inline BindingProperty Enum(int32_t value) {
  return BindingProperty::FromEnum(GradeRecord(), value);
}

// The tree of a JSON text that is in order.
inline BindingProperty Tree(std::string_view json) {
  ConversionContext context(Registry());
  BindingProperty tree = ReadJson(context, json);
  EXPECT_EQ(context.ErrorMessage(), "") << json.substr(0, 100);
  return tree;
}

// The JSON text of a tree that can be written.
inline std::string Json(const BindingProperty& tree) {
  ConversionContext context(Registry());
  std::string text;
  WriteJson(context, tree, &text);
  EXPECT_EQ(context.ErrorMessage(), "");
  return text;
}

}  // namespace Kest::Samples
