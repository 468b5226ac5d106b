// A million nested values on a stack of 256 KiB: no walk of a tree may recurse.
#include "binding/tree/binding_property.h"
#include "tests/binding/tree_text.h"
#include "tests/support/small_stack.h"

namespace Kest {
namespace {

using namespace Samples;

constexpr size_t kDepth = 1'000'000;

struct Format {
  const char* why;
  BindingProperty (*read)(ConversionContext& context, std::string_view text);
  void (*write)(ConversionContext& context, const BindingProperty& tree, std::string* out);
  std::string open, innermost, close;
  const char* unclosed;  // why the opening half alone is refused
};

BindingProperty ReadText(ConversionContext& context, std::string_view text) {
  return ReadJson(context, text);
}

void WalkEveryWay(const Format& format) {
  std::string text;
  for (size_t i = 0; i < kDepth; ++i) text += format.open;
  ConversionContext refused(Registry());
  format.read(refused, text);
  EXPECT_EQ(refused.ErrorMessage(), format.unclosed);
  text += format.innermost;
  for (size_t i = 0; i < kDepth; ++i) text += format.close;
  ConversionContext context(Registry());
  BindingProperty copy;
  {
    const BindingProperty tree = format.read(context, text);
    Assign(context, "p", tree, &copy);
    EXPECT_TRUE(copy == tree);
    EXPECT_TRUE(ToProperty(context, tree) == tree);
  }
  std::string written;
  format.write(context, copy, &written);
  EXPECT_TRUE(context.Ok()) << context.ErrorMessage();
  EXPECT_TRUE(written == text);
}

TEST(DeepTree, AMillionNestedValuesNeedNoDeepStack) {
  const Format formats[] = {
      {"JSON lists", &ReadText, &WriteJson, "[", "null", "]", "Invalid value."},
      {"JSON objects", &ReadText, &WriteJson, "{\"a\":", "null", "}", "Invalid value."},
      {"MessagePack arrays", &ReadPacked, &WritePacked, "\x91", "\xC0", "",
       "Invalid MessagePack data. 8-bit integer value at position 1000000 is truncated."},
      {"MessagePack maps", &ReadPacked, &WritePacked, "\x81\xA1m", "\xC0", "",
       "Invalid MessagePack data. 8-bit integer value at position 3000000 is truncated."},
  };
  for (const Format& format : formats) {
    SCOPED_TRACE(format.why);
    Testing::RunOnSmallStack([&format] { WalkEveryWay(format); });
  }
}

}  // namespace
}  // namespace Kest
