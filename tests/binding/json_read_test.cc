#include "binding/json/json_adapter.h"
#include "tests/binding/binding_samples.h"

namespace Kest {
namespace {

using namespace Samples;
using namespace std::string_literals;

// All others are compared with those of another reader (fuzz/json_read_property.cc).
TEST(ReadJson, FailuresOfItsOwnHaveTheirPlace) {
  const char* const tooBig = "Number too big to be stored in double.";
  const char* const surrogate = "The surrogate pair in string is invalid.";
  const struct {
    const char* why;
    std::string json;
    const char* failure;
    size_t offset;
  } cases[] = {
      {"low surrogate alone", "[1,\"a\\uDC00\"]", surrogate, 12},
      {"low surrogate in a name", "{\"\\uDFFF\":1}", surrogate, 9},
      {"just too large", "[0,1.7976931348623159e308]", tooBig, 3},
      {"too large by its exponent alone", "0e309", tooBig, 0},
      {"too large in digits", "-" + std::string(400, '9'), tooBig, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.why);
    ConversionContext context(Registry());
    size_t offset = SIZE_MAX;
    EXPECT_TRUE(ReadJson(context, c.json, &offset).IsEmpty());
    EXPECT_EQ(context.ErrorMessage(), c.failure);
    EXPECT_EQ(offset, c.offset);
  }
}

TEST(ReadJson, StructuresOfManyMembersKeepOrderAndFindEachName) {
  std::string json = "{";
  for (int i = 0; i < 1000; ++i) json += "\"key" + std::to_string(i * 7 % 1000) + "\":0,";
  for (int i = 0; i < 1000; ++i)
    json += "\"key" + std::to_string(i) + "\":" + std::to_string(i) + ",";
  json.back() = '}';
  const BindingProperty tree = Tree(json);
  ASSERT_EQ(tree.Size(), 1000u);
  for (size_t i = 0; i < 1000; ++i) {
    const std::string name = "key" + std::to_string(i * 7 % 1000);
    ASSERT_EQ(tree.MemberName(i), name);
    ASSERT_EQ(tree.FindMember(name), &tree.MemberValue(i));
    ASSERT_EQ(tree.MemberValue(i).AsUnsigned(), i * 7 % 1000);
  }
  EXPECT_EQ(tree.FindMember("key1000"), nullptr);
}

TEST(ReadJson, BoundsAreKept) {
  ConversionContext large(Registry());
  ReadJson(large, std::string(kMaxJsonBytes + 1, ' '));
  EXPECT_EQ(large.ErrorMessage(), "Body is too large");

  // Where addresses have 32 bits, the bytes of a tree come to their bound first.
  constexpr size_t kFitting = sizeof(void*) == 8 ? kMaxTreeValues - 1 : kMaxTreeValues / 4 * 3;
  std::string text = "[";
  for (size_t i = 1; i < kMaxTreeValues; ++i) text += "1,";
  EXPECT_EQ(Tree(text.substr(0, 2 * kFitting) + "]").Size(), kFitting);
  ConversionContext tooMany(Registry());
  ReadJson(tooMany, text + "1]");
  EXPECT_EQ(tooMany.ErrorMessage(), "Too many values.");
}

}  // namespace
}  // namespace Kest
