#include "binding/assign_scalar.h"

#include <cfloat>
#include <clocale>
#include <cmath>
#include <limits>

#include "log/positional_format.h"
#include "tests/binding/binding_samples.h"

namespace Kest {
namespace {

using namespace Samples;

BindingProperty Text(std::string_view text) {
  return BindingProperty::FromString(text);
}
BindingProperty Signed(int64_t value) {
  return BindingProperty::FromSigned(value);
}
BindingProperty Unsigned(uint64_t value) {
  return BindingProperty::FromUnsigned(value);
}
BindingProperty Float(double value) {
  return BindingProperty::FromFloat(value);
}
BindingProperty Enum(int32_t value) {
  return BindingProperty::FromEnum(GradeRecord(), value);
}
BindingProperty Blob(std::string_view bytes) {
  return BindingProperty::FromBlob({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()});
}
const BindingProperty kEmpty;

template <typename T>
struct Case {
  const char* why;
  BindingProperty input;
  T value;              // what the target holds then
  std::string failure;  // empty: none
};

// Assigns each input to a target that held `before`; a failure must leave it.
template <typename T, size_t size>
void Check(const T& before, const Case<T> (&cases)[size]) {
  for (const Case<T>& c : cases) {
    SCOPED_TRACE(c.why);
    ConversionContext context(Registry());
    T target = before;
    Assign(context, "p", c.input, &target);
    EXPECT_EQ(context.ErrorText(), c.failure);
    EXPECT_EQ(target, c.failure.empty() ? c.value : before);
  }
}

std::string Required() {
  return "A value for 'p' is required.";
}
std::string Range(std::string_view value, std::string_view type) {
  return Format("Value %1 for 'p' of type %2 is out of range", value, type);
}
std::string Malformed(std::string_view value, std::string_view type) {
  return Format("Value %1 for 'p' of type %2 is in an incorrect format", value, type);
}
std::string Kind(std::string_view type, std::string_view kind) {
  return Format(
      "Couldn't assign value to 'p' of type %1 because the input is of an invalid type %2.", type,
      kind);
}
std::string NotABool(std::string_view text) {
  return Format(
      "Value %1 for 'p' of type bool is in an incorrect format. Options are \"true\", \"false\", "
      "\"1\", \"0\".",
      text);
}

TEST(AssignBool, TakesBoolsAndFourWords) {
  const Case<bool> cases[] = {
      {"bool", BindingProperty::FromBool(true), true, ""},
      {"one", Text("1"), true, ""},
      {"word", Text("true"), true, ""},
      {"zero", Text("0"), false, ""},
      {"false", Text("false"), false, ""},
      {"capital letter", Text("True"), false, NotABool("True")},
      {"leading blank", Text(" true"), false, NotABool(" true")},
      {"another word", Text("yes"), false, NotABool("yes")},
      {"no text", Text(""), false, NotABool("")},
      {"empty", kEmpty, false, Required()},
      {"integer", Signed(3), false, Kind("bool", "signed")},
      {"unsigned", Unsigned(1), false, Kind("bool", "unsigned")},
      {"enumerator", Enum(1), false, Kind("bool", "enum")},
  };
  Check(false, cases);
}

TEST(AssignInteger, NarrowTargetsKeepTheirBounds) {
  const Case<int8_t> int8[] = {
      {"lowest", Signed(-128), -128, ""},
      {"below", Signed(-129), 0, Range("-129", "int8")},
      {"highest", Unsigned(127), 127, ""},
      {"above", Unsigned(128), 0, Range("128", "int8")},
      {"float cut toward zero", Float(-3.99), -3, ""},
      {"float in the last step", Float(127.5), 0, Range("127.5", "int8")},
      {"not a number", Float(NAN), 0, Range("nan", "int8")},
      {"infinite", Float(-INFINITY), 0, Range("-inf", "int8")},
      {"enumerator", Enum(-4), -4, ""},
      {"bool", BindingProperty::FromBool(true), 0, Kind("int8", "bool")},
      {"blob", Blob("1"), 0, Kind("int8", "blob")},
      {"collection", BindingProperty::Collection(), 0, Kind("int8", "collection")},
      {"structure", BindingProperty::Structure(), 0, Kind("int8", "structure")},
      {"empty", kEmpty, 0, Required()},
  };
  Check<int8_t>(99, int8);
  const Case<uint8_t> uint8[] = {
      {"text above", Text("300"), 0, Range("300", "uint8")},
      {"text at the bound", Text("255"), 255, ""},
      {"negative enumerator", Enum(-4), 0, Range("-4", "uint8")},
  };
  Check<uint8_t>(99, uint8);
  const Case<int16_t> int16[] = {{"above", Signed(32768), 0, Range("32768", "int16")}};
  Check<int16_t>(99, int16);
  const Case<uint16_t> uint16[] = {{"highest", Signed(65535), 65535, ""},
                                   {"above", Float(65536), 0, Range("65536", "uint16")}};
  Check<uint16_t>(99, uint16);
  const Case<uint32_t> uint32[] = {{"sign is kept", Signed(-1), 0, Range("-1", "uint32")},
                                   {"highest", Unsigned(4294967295u), 4294967295u, ""}};
  Check<uint32_t>(99, uint32);
}

TEST(AssignInteger, TextsAreReadWhole) {
  const Case<int32_t> cases[] = {
      {"hexadecimal", Text("0x1F"), 31, ""},
      {"octal", Text("017"), 15, ""},
      {"negative hexadecimal", Text("-0x10"), -16, ""},
      {"plus and blanks before", Text(" \t+12"), 12, ""},
      {"blank behind", Text("12 "), 0, Malformed("12 ", "int32")},
      {"letters behind", Text("12abc"), 0, Malformed("12abc", "int32")},
      {"no octal digit", Text("08"), 0, Malformed("08", "int32")},
      {"prefix alone", Text("0x"), 0, Malformed("0x", "int32")},
      {"binary prefix", Text("0b1"), 0, Malformed("0b1", "int32")},
      {"no text", Text(""), 0, Malformed("", "int32")},
      {"sign alone", Text("-"), 0, Malformed("-", "int32")},
      {"two signs", Text("--1"), 0, Malformed("--1", "int32")},
      {"fraction", Text("1.5"), 0, Malformed("1.5", "int32")},
      {"NUL inside", Text(std::string_view("5\0x", 3)), 0,
       Malformed(std::string_view("5\0x", 3), "int32")},
      {"above", Text("2147483648"), 0, Range("2147483648", "int32")},
      {"beyond 64 bits", Text("99999999999999999999"), 0, Range("99999999999999999999", "int32")},
      {"beyond, with letters", Text("99999999999999999999x"), 0,
       Malformed("99999999999999999999x", "int32")},
  };
  Check<int32_t>(-5, cases);
}

TEST(AssignInteger, SixtyFourBitEdgesAreExact) {
  const Case<int64_t> int64[] = {
      {"lowest float", Float(-0x1p63), INT64_MIN, ""},
      {"2^63 as float", Float(0x1p63), 0, Range("9.2233720368547758e+18", "int64")},
      {"2^63 as integer", Unsigned(uint64_t{1} << 63), 0, Range("9223372036854775808", "int64")},
      {"lowest text", Text("-9223372036854775808"), INT64_MIN, ""},
      {"below", Text("-9223372036854775809"), 0, Range("-9223372036854775809", "int64")},
  };
  Check<int64_t>(1, int64);
  const Case<uint64_t> uint64[] = {
      {"highest", Unsigned(UINT64_MAX), UINT64_MAX, ""},
      {"2^64 as float", Float(0x1p64), 0, Range("1.8446744073709552e+19", "uint64")},
      {"negative fraction is below zero", Float(-0.5), 0, Range("-0.5", "uint64")},
      {"negative text", Text("-1"), 0, Range("-1", "uint64")},
      {"text that would wrap to one", Text("-18446744073709551615"), 0,
       Range("-18446744073709551615", "uint64")},
      {"negative zero", Text("-0"), 0, ""},
  };
  Check<uint64_t>(1, uint64);
}

TEST(AssignFloat, OnlyFiniteValuesOfTheRangePass) {
  const Case<double> doubles[] = {
      {"integer", Signed(-3), -3, ""},
      {"decimal", Text("1.5e3"), 1500, ""},
      {"without leading digit", Text(" +.5"), 0.5, ""},
      {"hexadecimal", Text("-0x1.8p1"), -3, ""},
      {"tiny is kept", Text("4.9e-324"), 4.9e-324, ""},
      {"tinier is zero", Text("1e-400"), 0, ""},
      {"tiny with a huge exponent", Text("0.1e-99999999999999999999"), 0, ""},
      {"zero with a huge exponent", Text("0e99999999999999999999"), 0, ""},
      {"too large", Text("1e400"), 0, Range("1e400", "double")},
      {"just too large", Text("1.7976931348623159e308"), 0,
       Range("1.7976931348623159e308", "double")},
      {"infinite by name", Text("-Inf"), 0, Range("-Inf", "double")},
      {"not a number by name", Text("nan"), 0, Range("nan", "double")},
      {"infinite", Float(INFINITY), 0, Range("inf", "double")},
      {"not a number", Float(NAN), 0, Range("nan", "double")},
      {"sign behind a prefix", Text("0x-1"), 0, Malformed("0x-1", "double")},
      {"exponent without digits", Text("1e"), 0, Malformed("1e", "double")},
      {"comma", Text("1,5"), 0, Malformed("1,5", "double")},
      {"no text", Text(""), 0, Malformed("", "double")},
  };
  Check<double>(-9, doubles);
  const Case<float> floats[] = {
      {"largest", Float(FLT_MAX), FLT_MAX, ""},
      {"above", Float(3.5e38), 0, Range("3.5e+38", "float")},
      {"text above", Text("1e39"), 0, Range("1e39", "float")},
  };
  Check<float>(-9, floats);
}

TEST(AssignFloat, TheLocaleDoesNotCount) {
  const char* former = std::setlocale(LC_NUMERIC, nullptr);
  const std::string saved = former != nullptr ? former : "C";
  std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
  const Case<double> cases[] = {{"point", Text("1.5"), 1.5, ""}};
  Check<double>(0, cases);
  std::setlocale(LC_NUMERIC, saved.c_str());
}

TEST(AssignString, TakesTextsAndEnumerators) {
  const std::string notAString = "Couldn't assign value to 'p' because the input is not a string.";
  const Case<std::string> cases[] = {
      {"text", Text(std::string_view("a\0b", 3)), std::string("a\0b", 3), ""},
      {"enumerator", Enum(1), "Epic", ""},
      {"nameless enumerator", Enum(5), "", "5 is not a valid enumeration value for 'p'."},
      {"integer", Signed(5), "", notAString},
      {"bool", BindingProperty::FromBool(true), "", notAString},
      {"blob", Blob("x"), "", notAString},
      {"empty", kEmpty, "", Required()},
  };
  Check<std::string>("before", cases);
  const Case<std::vector<uint8_t>> blobs[] = {
      {"blob", Blob("\xff\x01"), {0xff, 1}, ""},
      {"text", Text("ab"), {'a', 'b'}, ""},
      {"empty", kEmpty, {}, Required()},
      {"integer", Signed(1), {}, Kind("blob", "signed")},
  };
  Check<std::vector<uint8_t>>({9}, blobs);
}

TEST(AssignEnumeration, TakesNamesAndValuesOfItsEnumerators) {
  const auto invalid = [](std::string_view value) {
    return Format("%1 is not a valid Grade enumeration value for 'p'.", value);
  };
  const Case<Grade> cases[] = {
      {"name", Text("Fabled"), Grade::kFabled, ""},
      {"number as text", Text("0x1"), Grade::kEpic, ""},
      {"negative number as text", Text("-4"), Grade::kFabled, ""},
      {"signed", Signed(-4), Grade::kFabled, ""},
      {"unsigned", Unsigned(1), Grade::kEpic, ""},
      {"enumerator", Enum(1), Grade::kEpic, ""},
      {"other letters", Text("epic"), {}, invalid("epic")},
      {"unknown number as text", Text("7"), {}, invalid("7")},
      {"neither name nor number", Text("7x"), {}, invalid("7x")},
      {"number beyond 32 bits", Unsigned(4294967297u), {}, invalid("4294967297")},
      {"unknown enumerator", Enum(2), {}, invalid("2")},
      {"empty", kEmpty, {}, Required()},
      {"float",
       Float(1),
       {},
       "Couldn't assign value to 'p' of enum type because the input is of an invalid type float."},
  };
  Check(Grade::kPlain, cases);
}

TEST(AssignObject, TakesEveryKind) {
  for (const char* json : {"null", "true", "-1", "[1,{\"a\":null}]", "{\"b\":[\"x\"]}"}) {
    ConversionContext context(Registry());
    BindingProperty target = Text("before");
    Assign(context, "p", Tree(json), &target);
    EXPECT_TRUE(context.Ok());
    EXPECT_EQ(Json(target), json);
  }
}

TEST(Assign, NothingHappensOnceTheContextHasFailed) {
  ConversionContext context(Registry());
  context.Fail("first");
  context.Fail("second");
  EXPECT_EQ(context.ErrorText(), "first");
  EXPECT_EQ(Json(context.property()), R"({"error":"first"})");

  int32_t number = 1;
  Grade grade = Grade::kPlain;
  std::vector<std::string> words = {"kept"};
  Part part;
  Assign(context, "p", Signed(2), &number);
  Assign(context, "p", Text("Epic"), &grade);
  Assign(context, "p", BindingProperty::Collection(), &words);
  Assign(context, "p", Tree(R"({"name":"x"})"), &part);
  EXPECT_TRUE(ReadJson(context, "[1]").IsEmpty());
  EXPECT_EQ(number, 1);
  EXPECT_EQ(grade, Grade::kPlain);
  EXPECT_EQ(words.size(), 1u);
  EXPECT_EQ(part, Part());
  EXPECT_EQ(context.ErrorText(), "first");
}

}  // namespace
}  // namespace Kest
