#include "binding/convert/assign_composite.h"

#include "tests/binding/binding_samples.h"

namespace Kest {
namespace {

using namespace Samples;

template <typename T>
std::string FailureOf(std::string_view json, T* target) {
  ConversionContext context(Registry());
  Assign(context, "p", Tree(json), target);
  return context.ErrorMessage();
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
  std::string text;  // what was missing is as it was
  ConversionContext context(Registry());
  WriteJsonValue(context, whole, &text);
  EXPECT_EQ(text, R"({"part":{"name":"a","count":2},"parts":[{"name":"b","count":7},)"
                  R"({"name":"c","count":7}],"byName":{"":{"name":"e","count":7},)"
                  R"("x":{"name":"d","count":7}},"shared":{"y":{"name":"f","count":7}},)"
                  R"("words":["g",""],"bytes":"hi","anything":{"z":[null]},"grade":"Fabled",)"
                  R"("ratio":0.5,"flag":true,"id":4294967296})");
  const BindingProperty tree = ToProperty(context, whole);
  EXPECT_EQ(Json(tree), text);
  Whole back;
  Assign(context, "p", tree, &back);
  EXPECT_EQ(ToProperty(context, back), tree) << context.ErrorMessage();
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
  EXPECT_EQ(context.ErrorMessage(),
            "Couldn't convert native value because it's an unregistered structure.");
}

TEST(AssignVector, IsClearedFirstAndStopsAtTheFirstFailure) {
  std::vector<int32_t> numbers = {9, 9, 9};
  EXPECT_EQ(FailureOf("[1,2]", &numbers), "");
  EXPECT_EQ(numbers, (std::vector<int32_t>{1, 2}));
  EXPECT_EQ(FailureOf("[3,\"x\",\"y\"]", &numbers),
            "Value x for 'p' of type int32 is in an incorrect format");
  EXPECT_EQ(numbers, (std::vector<int32_t>{3, 0}));
  EXPECT_NE(FailureOf("null", &numbers), "");
  EXPECT_TRUE(numbers.empty());
  std::map<std::string, int32_t> map = {{"old", 1}};
  EXPECT_EQ(FailureOf(R"({"a":1,"a":2})", &map), "");
  EXPECT_EQ(map, (std::map<std::string, int32_t>{{"a", 2}}));
}

TEST(AssignVector, TakesMemoryAsElementsArrive) {
  std::vector<Whole> wholes;
  std::string zeros = "[{},0";
  for (int i = 0; i < 100'000; ++i) zeros += ",0";
  EXPECT_NE(FailureOf(zeros + "]", &wholes), "");
  EXPECT_LE(wholes.capacity() * sizeof(Whole), 32'768u);
}

TEST(ReadValue, EnumeratorsKeepTheirTypeAndNothingIsEmpty) {
  ConversionContext context(Registry());
  EXPECT_EQ(ToProperty(context, Grade::kEpic), Enum(1));
  EXPECT_EQ(ToProperty(context, std::shared_ptr<const Part>()), BindingProperty());
  EXPECT_TRUE(context.Ok());
}

}  // namespace
}  // namespace Kest
