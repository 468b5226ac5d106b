#include "binding/convert/assign_scalar.h"

#include <cmath>

#include "log/positional_format.h"
#include "tests/binding/binding_samples.h"

namespace Kest {
namespace {

using namespace Samples;

using Bytes = std::vector<uint8_t>;
constexpr std::string_view kRange = "Value %1 for 'p' of type %2 is out of range";
constexpr std::string_view kMalformed = "Value %1 for 'p' of type %2 is in an incorrect format";
constexpr std::string_view kKind =
    "Couldn't assign value to 'p' of type %1 because the input is of an invalid type %2.";

// Assigns the input to a T, which a failure must leave alone; returns the failure or T as JSON.
template <typename T>
std::string Into(const BindingProperty& input) {
  T before = T();
  if constexpr (requires { T(99); }) before = T(99);
  T target = before;
  ConversionContext context(Registry());
  Assign(context, "p", input, &target);
  if (context.Ok()) return Json(ToProperty(context, target));
  EXPECT_EQ(target, before);
  return context.ErrorMessage();
}

struct Case {
  const char* why;
  std::string (*into)(const BindingProperty& input);
  BindingProperty input;
  std::string outcome;
};

template <size_t size>
void Check(const Case (&cases)[size]) {
  for (const Case& c : cases) EXPECT_EQ(c.into(c.input), c.outcome) << c.why;
}

// Which numbers fit is compared with their value (fuzz/conversion_property.cc).
TEST(AssignScalar, FailuresNameValueTypeAndPath) {
  const auto notABool = [](std::string_view text) {
    return Format(
        "Value %1 for 'p' of type bool is in an incorrect format. Options are \"true\", \"false\", "
        "\"1\", \"0\".",
        text);
  };
  const Case cases[] = {
      {"one", Into<bool>, Text("1"), "true"},
      {"word", Into<bool>, Text("false"), "false"},
      {"zero", Into<bool>, Text("0"), "false"},
      {"capital letter", Into<bool>, Text("True"), notABool("True")},
      {"leading space", Into<bool>, Text(" true"), notABool(" true")},
      {"integer", Into<bool>, Signed(3), Format(kKind, "bool", "signed")},
      {"float in the last step", Into<int8_t>, Float(127.5), Format(kRange, "127.5", "int8")},
      {"structure", Into<int8_t>, Tree("{}"), Format(kKind, "int8", "structure")},
      {"negative enumerator", Into<uint8_t>, Enum(-4), Format(kRange, "-4", "uint8")},
      {"above", Into<uint16_t>, Float(65536), Format(kRange, "65536", "uint16")},
      {"sign is kept", Into<uint32_t>, Signed(-1), Format(kRange, "-1", "uint32")},
      {"not a number", Into<int64_t>, Float(NAN), Format(kRange, "nan", "int64")},
      {"2^64", Into<uint64_t>, Float(0x1p64), Format(kRange, "1.8446744073709552e+19", "uint64")},
      {"above", Into<float>, Float(3.5e38), Format(kRange, "3.5e+38", "float")},
      {"infinite", Into<double>, Float(INFINITY), Format(kRange, "inf", "double")},
      {"integer", Into<Bytes>, Signed(1), Format(kKind, "blob", "signed")},
  };
  Check(cases);
  for (const auto into :
       {Into<bool>, Into<int8_t>, Into<double>, Into<std::string>, Into<Bytes>, Into<Grade>}) {
    EXPECT_EQ(into({}), "A value for 'p' is required.");
  }
}

TEST(AssignInteger, EveryCharacterCounts) {
  const Case cases[] = {
      {"hexadecimal", Into<int32_t>, Text("0x1F"), "31"},
      {"octal", Into<int32_t>, Text("017"), "15"},
      {"negative hexadecimal", Into<int32_t>, Text("-0x10"), "-16"},
      {"plus and spaces before", Into<int32_t>, Text(" \t+12"), "12"},
      {"lowest", Into<int64_t>, Text("-9223372036854775808"), "-9223372036854775808"},
      {"negative zero", Into<uint64_t>, Text("-0"), "0"},
  };
  Check(cases);
  using namespace std::string_view_literals;
  for (const std::string_view text : {"12 "sv, "12abc"sv, "08"sv, "0x"sv, "0b1"sv, ""sv, "-"sv,
                                      "--1"sv, "1.5"sv, "5\0x"sv, "99999999999999999999x"sv}) {
    EXPECT_EQ(Into<int32_t>(Text(text)), Format(kMalformed, text, "int32"));
  }
  for (const char* text : {"2147483648", "99999999999999999999", "-9223372036854775809"}) {
    EXPECT_EQ(Into<int32_t>(Text(text)), Format(kRange, text, "int32"));
  }
  for (const char* text : {"-1", "-18446744073709551615"}) {  // must not wrap
    EXPECT_EQ(Into<uint64_t>(Text(text)), Format(kRange, text, "uint64"));
  }
}

TEST(AssignFloat, EveryCharacterCounts) {
  const Case cases[] = {
      {"decimal", Into<double>, Text("1.5e3"), "1500.0"},
      {"without leading digit", Into<double>, Text(" +.5"), "0.5"},
      {"hexadecimal", Into<double>, Text("-0x1.8p1"), "-3.0"},
      {"tiny is kept", Into<double>, Text("4.9e-324"), "5e-324"},
      {"tinier is zero", Into<double>, Text("1e-400"), "0.0"},
      {"tiny, huge exponent", Into<double>, Text("0.1e-99999999999999999999"), "0.0"},
      {"zero, huge exponent", Into<double>, Text("0e99999999999999999999"), "0.0"},
  };
  Check(cases);
  for (const char* text : {"1e400", "1.7976931348623159e308", "-Inf", "nan"}) {
    EXPECT_EQ(Into<double>(Text(text)), Format(kRange, text, "double"));
  }
  for (const char* text : {"0x-1", "1e", "1,5", ""}) {
    EXPECT_EQ(Into<double>(Text(text)), Format(kMalformed, text, "double"));
  }
}

TEST(AssignString, NulsAreKept) {
  const Case cases[] = {
      {"text", Into<std::string>, Text({"a\0b", 3}), "\"a\\u0000b\""},
      {"enumerator", Into<std::string>, Enum(1), "\"Epic\""},
      {"nameless enumerator", Into<std::string>, Enum(5),
       "5 is not a valid enumeration value for 'p'."},
      {"blob", Into<Bytes>, Blob({"\0z", 2}), "\"\\u0000z\""},
      {"text", Into<Bytes>, Text({"\0ab", 3}), "\"\\u0000ab\""},
  };
  Check(cases);
}

TEST(AssignEnumeration, TakesNamesAndValuesOfItsEnumerators) {
  constexpr std::string_view kInvalid = "%1 is not a valid Grade enumeration value for 'p'.";
  const Case cases[] = {
      {"number as text", Into<Grade>, Text("0x1"), "\"Epic\""},
      {"unsigned", Into<Grade>, Unsigned(1), "\"Epic\""},
      {"enumerator", Into<Grade>, Enum(1), "\"Epic\""},
      {"other letters", Into<Grade>, Text("epic"), Format(kInvalid, "epic")},
      {"neither name nor number", Into<Grade>, Text("7x"), Format(kInvalid, "7x")},
      {"beyond 32 bits", Into<Grade>, Unsigned(4294967297u), Format(kInvalid, "4294967297")},
      {"unknown enumerator", Into<Grade>, Enum(2), Format(kInvalid, "2")},
      {"float", Into<Grade>, Float(1),
       "Couldn't assign value to 'p' of enum type because the input is of an invalid type float."},
  };
  Check(cases);
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
