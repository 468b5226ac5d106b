// One value in all formats and native types: in any format of a body, handlers see the same.
#include <charconv>
#include <sstream>

#include "binding/yaml/yaml_adapter.h"
#include "log/positional_format.h"
#include "tests/binding/tree_text.h"
#include "tests/support/golden.h"

namespace Kest {
namespace {

using namespace Samples;

// Assigns the input to a T, which a failure leaves alone when it is a scalar; returns the failure
// or T as JSON.
template <typename T>
std::string Into(const BindingProperty& input) {
  T before = T();
  if constexpr (requires { T(99); }) before = T(99);
  T target = before;
  ConversionContext context(Registry());
  Assign(context, "p", input, &target);
  if (context.Ok()) return Shown(ToProperty(context, target));
  if constexpr (std::is_scalar_v<T>) {
    EXPECT_EQ(target, before);
  }
  return context.ErrorMessage();
}

using Conversion = std::string (*)(const BindingProperty& input);
const std::map<std::string, Conversion> kTargets = {
    {"bool", Into<bool>},          {"int8", Into<int8_t>},
    {"uint8", Into<uint8_t>},      {"uint16", Into<uint16_t>},
    {"int32", Into<int32_t>},      {"uint32", Into<uint32_t>},
    {"int64", Into<int64_t>},      {"uint64", Into<uint64_t>},
    {"float", Into<float>},        {"double", Into<double>},
    {"string", Into<std::string>}, {"blob", Into<std::vector<uint8_t>>},
    {"Grade", Into<Grade>},        {"Part", Into<Part>},
    {"Whole", Into<Whole>},        {"map", Into<std::map<std::string, Part>>},
    {"any", Into<BindingProperty>}};

// Which numbers fit is compared with their value (fuzz/conversion_property.cc).
TEST(Assign, EachTypeTakesItsValuesAndFailuresNameValueTypeAndPath) {
  EXPECT_TRUE(Testing::GoldenCases("tests/binding/conversions.txt", [](const std::string& input) {
    const size_t space = input.find(' ');
    return kTargets.at(input.substr(0, space))(ReadInput(input.substr(space + 1)));
  }));
}

// "a1 'text' ff": bytes in hexadecimal, and texts.
std::string Bytes(const std::string& notation) {
  std::string bytes;
  std::istringstream words(notation);
  for (std::string word; words >> word;) {
    if (word.front() == '\'') {
      bytes += word.substr(1, word.size() - 2);
    } else {
      uint8_t byte = 0;
      std::from_chars(word.data(), word.data() + word.size(), byte, 16);
      bytes += static_cast<char>(byte);
    }
  }
  return bytes;
}

TEST(Formats, OneValueReadsAlikeInEach) {
  EXPECT_TRUE(Testing::GoldenCases("tests/binding/formats.txt", [](const std::string& input) {
    std::istringstream lines(input);
    std::string target, json, packed, yaml;
    std::getline(std::getline(std::getline(lines, target), json), packed);
    std::getline(lines, yaml, '\0');
    ConversionContext context(Registry());
    const BindingProperty trees[] = {ReadJson(context, json), ReadPacked(context, Bytes(packed)),
                                     ReadYaml(context, yaml)};
    const Conversion convert = kTargets.at(target);
    std::string outcome = Shown(context, trees[0]) + ", " + convert(trees[0]);
    for (const BindingProperty& tree : trees) {
      EXPECT_EQ(Shown(tree) + ", " + convert(tree), outcome);
      EXPECT_TRUE(tree == trees[0]) << outcome;
    }
    return outcome;
  }));
}

// MessagePack calls small numbers signed, the texts unsigned: no target sees the difference.
TEST(Formats, SmallNumbersConvertAlike) {
  for (int number = 0; number < 128; ++number) {
    const std::string text = std::to_string(number);
    ConversionContext context(Registry());
    const BindingProperty packed = ReadPacked(context, std::string(1, static_cast<char>(number)));
    EXPECT_EQ(Json(packed), text);
    for (const auto& [name, convert] : kTargets) {
      if (name == "bool" || name == "blob" || name == "any") continue;  // these show the kind
      EXPECT_EQ(convert(packed), convert(Tree(text))) << name;
      EXPECT_EQ(convert(packed), convert(ReadYaml(context, text))) << name;
    }
  }
}

// Each kind in JSON, then the size and the first bytes as MessagePack.
TEST(Formats, EachValueIsWrittenInItsForm) {
  EXPECT_TRUE(Testing::GoldenCases("tests/binding/written.txt", [](const std::string& input) {
    const BindingProperty value = ReadInput(input);
    ConversionContext context(Registry());
    std::string json, bytes;
    WritePacked(context, value, &bytes);
    WriteJson(context, value, &json);
    std::string outcome = context.Ok() ? json.substr(0, 60) : context.ErrorMessage();
    outcome += Format(", %1:", bytes.size());
    for (const char byte : bytes.substr(0, 9))
      outcome += Format(" %02X", static_cast<uint8_t>(byte));
    return outcome;
  }));
}

// JSON is YAML but for pairs of escapes, which we do not write.
TEST(Formats, WrittenJsonReadsBackAsYaml) {
  const BindingProperty tree = Tree(
      R"({"a":[1,-2,0.5,1e300,true,null,"","null","\u00e9\ud83d\ude00","x: y # z"],"b":{"":{}}})");
  ConversionContext context(Registry());
  EXPECT_TRUE(ReadYaml(context, Json(tree)) == tree) << context.ErrorMessage();
}

TEST(Assign, NothingHappensOnceTheContextHasFailed) {
  ConversionContext context(Registry());
  context.Fail("first");
  context.Fail("second");
  EXPECT_EQ(Json(context.property()), R"({"error":"first"})");

  int32_t number = 1;
  Grade grade = Grade::kPlain;
  std::vector<std::string> words = {"kept"};
  Part part;
  Assign(context, "p", Signed(2), &number);
  Assign(context, "p", Text("Epic"), &grade);
  Assign(context, "p", Tree("[]"), &words);
  Assign(context, "p", Tree(R"({"name":"x"})"), &part);
  EXPECT_TRUE(ReadJson(context, "[1]").IsEmpty());
  EXPECT_TRUE(number == 1 && grade == Grade::kPlain && words.size() == 1 && part == Part());
  EXPECT_EQ(context.ErrorMessage(), "first");
}

}  // namespace
}  // namespace Kest
