// Each kind of input into a typical native type, against peers that check their input as well. One
// iteration converts 1,000 values. Both sides find the converter of a type at run time, after a
// pointer; ours also knows what failed and where, and its structures are registered at run time.
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
  ConversionContext context(Registry());
  for (const BindingProperty& input : inputs) {
    Target target{};
    Assign(context, "value", input, &target);
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

// Texts are parsed, all else is taken as nlohmann-json gives it.
template <typename Target, bool isText>
void TakeByPeer(const nlohmann::json& input, void* target) {
  Target& value = *static_cast<Target*>(target);
  if constexpr (std::is_same_v<Target, std::vector<uint8_t>>) {
    value = input.get_binary();
  } else if constexpr (isText) {
    value = ParseByHand(input.get_ref<const std::string&>());
  } else {
    input.get_to(value);
  }
}

// Compares both sides for inputs that `make` draws, converted to `Target`.
template <typename Target, typename T>
void CompareConversion(Table& table, const std::string& what, T (*make)(int32_t), double goal) {
  constexpr bool isText = std::is_same_v<T, std::string>;
  const Inputs inputs = MakeInputs(make);
  std::vector<nlohmann::json> peerInputs;
  for (int32_t i = 0; i < kValues; ++i) peerInputs.push_back(PeerInput(make(i)));
  // Volatile: found at run time, as our converters are.
  void (*volatile take)(const nlohmann::json&, void*) = &TakeByPeer<Target, isText>;
  const auto convertByPeer = [&] {
    for (const nlohmann::json& input : peerInputs) {
      Target target{};
      take(input, &target);
      Keep(target);
    }
  };
  table.Compare(
      what + ", 1,000 values", [&] { Convert<Target>(inputs); },
      isText ? "nlohmann-json and strtod" : "nlohmann-json", convertByPeer, AtLeast(goal));
}

}  // namespace

void AddRows(Table& table) {
  CompareConversion<bool>(table, "tree to bool", &MakeBool, 0.8);
  CompareConversion<int32_t>(table, "tree to int32", &MakeSigned, 0.6);
  CompareConversion<uint32_t>(table, "tree to uint32", &MakeUnsigned, 0.6);
  CompareConversion<double>(table, "tree to double", &MakeFloat, 0.6);
  CompareConversion<double>(table, "string to double", &MakeString, 1.7);
  CompareConversion<std::vector<uint8_t>>(table, "tree to blob", &MakeBlob, 0.8);
  CompareConversion<std::vector<int32_t>>(table, "tree to vector", &MakeCollection, 0.6);
  CompareConversion<Item>(table, "tree to structure", &MakeStructure, 0.7);
}

}  // namespace Kest::Bench
