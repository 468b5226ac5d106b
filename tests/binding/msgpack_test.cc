#include <cmath>

#include "binding/msgpack_reader.h"
#include "tests/binding/binding_samples.h"

namespace Kest {
namespace {

using namespace Samples;
using namespace std::string_literals;

std::span<const uint8_t> BytesOf(std::string_view text) {
  return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

TEST(ReadMessagePack, EachFormBecomesItsKind) {
  const struct {
    const char* why;
    std::string bytes;
    BindingProperty tree;
  } cases[] = {
      {"nil", "\xC0", {}},
      {"false", "\xC2", Bool(false)},
      {"true", "\xC3", Bool(true)},
      {"fixint is signed", "\x7F", Signed(127)},
      {"negative fixint", "\xFF", Signed(-1)},
      {"its lowest", "\xE0", Signed(-32)},
      {"uint 8", "\xCC\xFF", Unsigned(255)},
      {"uint 16 is big-endian", "\xCD\x01\x02", Unsigned(258)},
      {"uint 32", "\xCE\xFF\xFF\xFF\xFE", Unsigned(0xFFFFFFFE)},
      {"uint 64", "\xCF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFE", Unsigned(UINT64_MAX - 1)},
      {"int 8", "\xD0\x80", Signed(-128)},
      {"int 16", "\xD1\xFF\xFE", Signed(-2)},
      {"int 32 may be positive", "\xD2\x7F\xFF\xFF\xFF", Signed(INT32_MAX)},
      {"int 64", "\xD3\x80\0\0\0\0\0\0\0"s, Signed(INT64_MIN)},
      {"float 32 is widened", "\xCA\x3E\xC0\0\0"s, Float(0.375)},
      {"float 64", "\xCB\x7F\xEF\xFF\xFF\xFF\xFF\xFF\xFF", Float(1.7976931348623157e308)},
      {"infinity is a float", "\xCA\xFF\x80\0\0"s, Float(-INFINITY)},
      {"fixstr keeps bytes that are no UTF-8", "\xA3\xFF\0z"s, Text("\xFF\0z"s)},
      {"str 8", "\xD9\x02hi", Text("hi")},
      {"str 16", "\xDA\0\x02hi"s, Text("hi")},
      {"str 32", "\xDB\0\0\0\0"s, Text("")},
      {"bin 8", "\xC4\x02\0\xFF"s, Blob("\0\xFF"s)},
      {"bin 16", "\xC5\0\0"s, Blob("")},
      {"bin 32", "\xC6\0\0\0\x01z"s, Blob("z")},
      {"empty containers are complete at once", "\x94\x90\x80\xDC\0\0\xDF\0\0\0\0"s,
       Tree("[[],{},[],{}]")},
      {"array 32", "\xDD\0\0\0\x02\xA0\xC0"s, Tree(R"(["",null])")},
      {"map 16 in map", "\xDE\0\x02\xA1z\x81\xA1y\xC3\xD9\x01w\x91\xC2"s,
       Tree(R"({"z":{"y":true},"w":[false]})")},
      {"the later of a name, in the place of the first",
       "\x83\xA1"s + "a\x81\xA1p\xC3\xA1"s + "b\xC2\xA1"s + "a\x81\xA1q\xC0",
       Tree(R"({"a":{"q":null},"b":false})")},
  };
  for (const auto& c : cases) {
    ConversionContext context(Registry());
    size_t consumed = 0;
    const std::string bytes = c.bytes + "more";
    EXPECT_TRUE(ReadMessagePack(context, BytesOf(bytes), &consumed) == c.tree) << c.why;
    EXPECT_EQ(context.ErrorText(), "") << c.why;
    EXPECT_EQ(consumed, c.bytes.size()) << c.why;
  }
}

TEST(ReadMessagePack, FailuresNameTheItemTheyBeginAt) {
  const auto truncated = [](const char* bits, const char* position) {
    return "Invalid MessagePack data. "s + bits + "-bit integer value at position " + position +
           " is truncated.";
  };
  const auto invalid = [](const char* position, const char* reason = "") {
    return "Invalid MessagePack data at position "s + position + "." + reason;
  };
  const char* const kKey = " Map keys must be strings.";
  const struct {
    const char* why;
    std::string bytes, failure;
  } cases[] = {
      {"nothing at all", "", truncated("8", "0")},
      {"a missing item", "\x92\x01", truncated("8", "2")},
      {"a missing key", "\x81", truncated("8", "1")},
      {"a missing value", "\x81\xA1z", truncated("8", "3")},
      {"never used", "\xC1", invalid("0")},
      {"fixext", "\x91\xD4\x01\x02", invalid("1")},
      {"ext, cut off too", "\xC9", invalid("0")},
      {"uint 8", "\xCC", truncated("8", "0")},
      {"int 16", "\x91\xCD\x01", truncated("16", "1")},
      {"uint 32", "\xCE\x01\x02\x03", truncated("32", "0")},
      {"int 64", "\xD3\x01", truncated("64", "0")},
      {"float 32 is read as a number", "\xCA\x01", truncated("32", "0")},
      {"float 64", "\xCB", truncated("64", "0")},
      {"length of str 8", "\xD9", truncated("8", "0")},
      {"length of a key", "\x81\xDA\x01", truncated("16", "1")},
      {"count of array 16", "\xDC\x01", truncated("16", "0")},
      {"count of map 32", "\xDF\x01\x01\x01", truncated("32", "0")},
      {"fixstr", "\xA2z", "Invalid MessagePack data. String of size 2 at position 0 is truncated."},
      {"str 8", "\x91\xD9\x05zzz",
       "Invalid MessagePack data. String of size 5 at position 1 is truncated."},
      {"a key", "\x81\xA3z",
       "Invalid MessagePack data. String of size 3 at position 1 is truncated."},
      {"all that 32 bits claim", "\xDB\xFF\xFF\xFF\xFFz",
       "Invalid MessagePack data. String of size 4294967295 at position 0 is truncated."},
      {"bin", "\xC6\xFF\xFF\xFF\xFF",
       "Invalid MessagePack data. Raw bytes of size 4294967295 at position 0 are truncated."},
      {"a number as key", "\x81\x01\x01", invalid("1", kKey)},
      {"bytes as key", "\x82\xA1z\x01\xC4\x01z", invalid("4", kKey)},
      {"a bad byte as key", "\x81\xC1", invalid("1", kKey)},
      {"a count takes no memory, what follows fails first", "\xDD\xFF\xFF\xFF\xFF\x01\xC1",
       invalid("6")},
      {"100,000 headers that claim gigabytes", std::string(300'000, '\xDC'),
       truncated("8", "300000")},
  };
  for (const auto& c : cases) {
    ConversionContext context(Registry());
    size_t consumed = 77;
    EXPECT_TRUE(ReadMessagePack(context, BytesOf(c.bytes), &consumed) == BindingProperty());
    EXPECT_EQ(context.ErrorText(), c.failure) << c.why;
    EXPECT_EQ(consumed, 77u) << c.why;
  }
}

}  // namespace
}  // namespace Kest
