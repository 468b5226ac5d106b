// Each kind of input into a typical native type, against peers that check their input as well. One
// iteration converts 1,000 values. Both sides are called through a pointer, as the fields of a
// structure are converted; ours also knows what failed and where, and its structures are registered
// at run time.
#include <cerrno>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/comparison.h"
#include "binding/convert/convert.h"
#include "binding/convert/define_struct.h"

namespace Kest::Bench {
namespace {

constexpr int32_t kValues = 1000;

struct Item {
  std::string name;
  int32_t count = 0;
  double chance = 0;
  bool isNew = false;
};
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Item, name, count, chance, isNew)

const TypeRegistry& Registry() {
  static const TypeRegistry& registry = []() -> TypeRegistry& {
    static TypeRegistry types;
    DefineStruct<Item>(types, "Item", "Kest::Bench")
        .Fields<&Item::name, &Item::count, &Item::chance, &Item::isNew>();
    return types;
  }();
  return registry;
}

const Item kItem = {"MATERIAL_lantern_glass", 12, 0.375, true};

// The native values, drawn once; both sides get the same.
bool MakeBool(int32_t i) {
  return i % 3 == 0;
}
int32_t MakeSigned(int32_t i) {
  return i * -7919;
}
uint32_t MakeUnsigned(int32_t i) {
  return static_cast<uint32_t>(i) * 104729;
}
double MakeFloat(int32_t i) {
  return i * 0.123456789;
}
std::string MakeString(int32_t i) {
  return std::to_string(i * 0.123456789) + "e3";
}
std::vector<uint8_t> MakeBlob(int32_t i) {
  return std::vector<uint8_t>(static_cast<size_t>(i % 100), 0xA5);
}
std::vector<int32_t> MakeCollection(int32_t i) {
  return std::vector<int32_t>(20, i);
}
Item MakeStructure(int32_t i) {
  Item item = kItem;
  item.count = i;
  return item;
}

using Inputs = std::vector<BindingProperty>;

template <typename T>
Inputs MakeInputs(T (*make)(int32_t)) {
  ConversionContext context(Registry());
  Inputs inputs;
  for (int32_t i = 0; i < kValues; ++i) inputs.push_back(ToProperty(context, make(i)));
  return inputs;
}

template <typename Target>
void Convert(const Inputs& inputs) {
  const ValueAccessor* volatile found = &NativeAccessor<Target>();
  const ValueAccessor* const accessor = found;
  const NamedType as = {"value", IdentifyType<Target>(Registry())};
  ConversionContext context(Registry());
  for (const BindingProperty& input : inputs) {
    Target target{};
    accessor->Assign(context, as, input, &target);
    Keep(target);
  }
  Require(context.Ok(), "conversion failed");
}

template <typename T>
nlohmann::json PeerInput(const T& value) {
  if constexpr (std::is_same_v<T, std::vector<uint8_t>>) {
    return nlohmann::json::binary(value);
  } else {
    return value;
  }
}

// What one would write by hand for a text.
double ParseByHand(const std::string& text) {
  char* end = nullptr;
  errno = 0;
  const double value = std::strtod(text.c_str(), &end);
  if (text.empty() || end != text.c_str() + text.size() || errno == ERANGE) {
    throw std::range_error("no number");
  }
  return value;
}

// Strings are parsed, all else is taken as nlohmann-json gives it.
template <bool isString, typename Target>
void ConvertByPeer(const nlohmann::json& input, void* target) {
  Target& value = *static_cast<Target*>(target);
  if constexpr (std::is_same_v<Target, std::vector<uint8_t>>) {
    value = input.get_binary();
  } else if constexpr (isString) {
    value = ParseByHand(input.get_ref<const std::string&>());
  } else {
    input.get_to(value);
  }
}

// Compares both sides for inputs that `make` draws, converted to `Target`.
template <typename Target, typename T>
void CompareConversion(Table& table, const std::string& what, T (*make)(int32_t), double goal) {
  constexpr bool isString = std::is_same_v<T, std::string>;
  const Inputs inputs = MakeInputs(make);
  std::vector<nlohmann::json> peerInputs;
  for (int32_t i = 0; i < kValues; ++i) peerInputs.push_back(PeerInput(make(i)));
  void (*volatile found)(const nlohmann::json&, void*) = &ConvertByPeer<isString, Target>;
  const auto convertByPeer = [&] {
    auto* const convert = found;
    for (const nlohmann::json& input : peerInputs) {
      Target target{};
      convert(input, &target);
      Keep(target);
    }
  };
  table.Compare(
      what + ", 1,000 values", [&] { Convert<Target>(inputs); },
      isString ? "nlohmann-json and strtod" : "nlohmann-json", convertByPeer, AtLeast(goal));
}

}  // namespace

void AddRows(Table& table) {
  CompareConversion<bool>(table, "tree to bool", &MakeBool, 1);
  CompareConversion<int32_t>(table, "tree to int32", &MakeSigned, 1);
  CompareConversion<uint32_t>(table, "tree to uint32", &MakeUnsigned, 1);
  CompareConversion<double>(table, "tree to double", &MakeFloat, 1);
  CompareConversion<double>(table, "string to double", &MakeString, 1);
  CompareConversion<std::vector<uint8_t>>(table, "tree to blob", &MakeBlob, 1);
  CompareConversion<std::vector<int32_t>>(table, "tree to vector of 20 int32", &MakeCollection,
                                          1.5);
  CompareConversion<Item>(table, "tree to structure", &MakeStructure, 1.5);
}

}  // namespace Kest::Bench
