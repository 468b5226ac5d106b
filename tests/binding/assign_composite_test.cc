#include "binding/assign_composite.h"

#include "tests/binding/binding_samples.h"

namespace Kest {
namespace {

using namespace Samples;

template <typename T>
std::string FailureOf(std::string_view json, T* target) {
  ConversionContext context(Registry());
  Assign(context, "p", Tree(json), target);
  return context.ErrorText();
}

TEST(AssignStructure, FieldsAreFoundByNameInAnyOrder) {
  Whole whole;
  EXPECT_EQ(FailureOf(R"({"id":4294967296,"extra":[{"name":1}],"part":{"count":2,"name":"a"},
                          "parts":[{"name":"b"},{"name":"c","count":null}],
                          "byName":{"x":{"name":"d"},"":{"name":"e"}},"shared":{"y":{"name":"f"}},
                          "words":["g",""],"bytes":"hi","anything":{"z":[null]},
                          "grade":"Fabled","flag":"1"})",
                      &whole),
            "");
  EXPECT_EQ(whole.part, (Part{"a", 2}));
  EXPECT_EQ(whole.parts, (std::vector<Part>{{"b", 7}, {"c", 7}}));
  EXPECT_EQ(whole.byName, (std::map<std::string, Part>{{"x", {"d", 7}}, {"", {"e", 7}}}));
  EXPECT_EQ(*whole.shared.at("y"), (Part{"f", 7}));
  EXPECT_EQ(whole.words, (std::vector<std::string>{"g", ""}));
  EXPECT_EQ(whole.bytes, (std::vector<uint8_t>{'h', 'i'}));
  EXPECT_EQ(Json(whole.anything), R"({"z":[null]})");
  EXPECT_EQ(whole.grade, Grade::kFabled);
  EXPECT_EQ(whole.ratio, 0.5);  // missing: as it was
  EXPECT_TRUE(whole.flag);
  EXPECT_EQ(whole.id, 4294967296u);
}

TEST(AssignStructure, FailuresNameTheFieldAndTheFirstWins) {
  const std::string notAPart =
      "Couldn't assign value to 'parts' of type Part because the input not a structure.";
  const struct {
    const char* why;
    const char* json;
    std::string failure;
  } cases[] = {
      {"no structure", "[]",
       "Couldn't assign value to 'p' of type Whole because the input not a structure."},
      {"empty", "null", "A value for 'p' is required."},
      {"required field missing", R"({"part":{}})",
       "Couldn't assign value to 'part' of type Part because the input structure doesn't have "
       "required field 'name'."},
      {"required field empty", R"({"part":{"name":null}})",
       "Couldn't assign value to 'part' of type Part because the input structure doesn't have "
       "required field 'name'."},
      {"element has the name of its vector", R"({"parts":[{"name":"a"},5]})", notAPart},
      {"empty element", R"({"parts":[null]})", "A value for 'parts' is required."},
      {"field of an element", R"({"parts":[{"name":"a","count":"x"}]})",
       "Value x for 'count' of type int32 is in an incorrect format"},
      {"no collection", R"({"words":"a"})",
       "Couldn't assign value to 'words' of type vector because the input not a collection."},
      {"no map", R"({"byName":[]})",
       "Couldn't assign value to 'byName' of type map because the input not a structure."},
      {"empty entry of a map", R"({"byName":{"k":null}})", "A value for 'byName' is required."},
      {"registration order decides", R"({"flag":5,"part":7})",
       "Couldn't assign value to 'part' of type Part because the input not a structure."},
      {"wrong kind in a shared item", R"({"shared":{"k":true}})",
       "Couldn't assign value to 'shared' of type Part because the input not a structure."},
  };
  for (const auto& c : cases) {
    Whole whole;
    EXPECT_EQ(FailureOf(c.json, &whole), c.failure) << c.why;
  }
}

TEST(AssignStructure, UnregisteredTypesAreRefused) {
  const std::string refused =
      "Couldn't assign value to 'p' because the input is an unregistered structure or not a "
      "structure at all.";
  Stranger stranger;
  EXPECT_EQ(FailureOf("{}", &stranger), refused);
  std::vector<Stranger> strangers;
  EXPECT_EQ(FailureOf("[{}]", &strangers), refused);
  ConversionContext context(Registry());
  EXPECT_TRUE(ToProperty(context, stranger).IsEmpty());
  EXPECT_EQ(context.ErrorText(),
            "Couldn't convert native value because it's an unregistered structure.");
}

TEST(AssignVector, IsClearedFirstAndStopsAtTheFirstFailure) {
  std::vector<int32_t> numbers = {9, 9, 9};
  EXPECT_EQ(FailureOf("[1,2]", &numbers), "");
  EXPECT_EQ(numbers, (std::vector<int32_t>{1, 2}));
  EXPECT_EQ(FailureOf("[3,\"x\",\"y\"]", &numbers),
            "Value x for 'p' of type int32 is in an incorrect format");
  EXPECT_EQ(numbers, (std::vector<int32_t>{3, 0, 0}));
  EXPECT_NE(FailureOf("null", &numbers), "");
  EXPECT_TRUE(numbers.empty());
  std::map<std::string, int32_t> map = {{"old", 1}};
  EXPECT_EQ(FailureOf(R"({"a":1,"a":2})", &map), "");
  EXPECT_EQ(map, (std::map<std::string, int32_t>{{"a", 2}}));
}

TEST(ReadValue, EachNativeTypeHasItsKind) {
  ConversionContext context(Registry());
  const auto kind = [&](const auto& value) { return ToProperty(context, value).kind(); };
  EXPECT_EQ(kind(true), BindingKind::kBool);
  EXPECT_EQ(kind(int8_t{-1}), BindingKind::kSigned);
  EXPECT_EQ(kind(uint16_t{1}), BindingKind::kUnsigned);
  EXPECT_EQ(kind(1.0f), BindingKind::kFloat);
  EXPECT_EQ(kind(std::string("x")), BindingKind::kString);
  EXPECT_EQ(kind(std::vector<uint8_t>{1}), BindingKind::kBlob);
  EXPECT_EQ(kind(Grade::kEpic), BindingKind::kEnum);
  EXPECT_EQ(kind(std::vector<Part>()), BindingKind::kCollection);
  EXPECT_EQ(kind(Part()), BindingKind::kStructure);
  EXPECT_EQ(kind(std::map<std::string, bool>()), BindingKind::kStructure);
  EXPECT_EQ(kind(std::shared_ptr<const Part>()), BindingKind::kEmpty);
  EXPECT_EQ(kind(std::make_shared<const Part>()), BindingKind::kStructure);
  EXPECT_TRUE(context.Ok());
}

TEST(ReadValue, StructuresComeInRegistrationOrder) {
  Whole whole;
  whole.parts = {{"a", 1}};
  whole.byName = {{"k", {"b", 2}}};
  whole.shared["s"] = std::make_shared<const Part>(Part{"c", 3});
  whole.words = {"w"};
  whole.bytes = {'h'};
  whole.grade = Grade::kFabled;
  ConversionContext context(Registry());
  const BindingProperty tree = ToProperty(context, whole);
  const std::string expected =
      R"({"part":{"name":"","count":7},"parts":[{"name":"a","count":1}],)"
      R"("byName":{"k":{"name":"b","count":2}},"shared":{"s":{"name":"c","count":3}},)"
      R"("words":["w"],"bytes":"h","anything":null,"grade":"Fabled","ratio":0.5,"flag":false,)"
      R"("id":3})";
  EXPECT_EQ(Json(tree), expected);

  std::string direct = "before";
  WriteJsonValue(context, whole, &direct);
  EXPECT_EQ(direct, "before" + expected);

  Whole back;
  Assign(context, "p", tree, &back);
  EXPECT_EQ(ToProperty(context, back), tree);
  EXPECT_EQ(context.ErrorText(), "");
}

}  // namespace
}  // namespace Kest
