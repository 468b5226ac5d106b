#include <cmath>

#include "binding/msgpack/msgpack_reader.h"
#include "binding/msgpack/msgpack_writer.h"
#include "tests/binding/binding_samples.h"

namespace Kest {
namespace {

using namespace Samples;
using namespace std::string_literals;

std::span<const uint8_t> BytesOf(std::string_view text) {
  return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

// What each form becomes, and how it fails, is compared with a plain reader
// (fuzz/msgpack_read_property.cc); here is what that one cannot read.
TEST(ReadMessagePack, ClaimedSizesTakeNoMemory) {
  ConversionContext context(Registry());
  size_t consumed = 77;
  const std::string headers(300'000, '\xDC');  // 100,000 of them
  EXPECT_TRUE(ReadMessagePack(context, BytesOf(headers), &consumed).IsEmpty());
  EXPECT_EQ(context.ErrorMessage(),
            "Invalid MessagePack data. 8-bit integer value at position 300000 is truncated.");
  EXPECT_EQ(consumed, 77u);
}

std::string Packed(const BindingProperty& tree) {
  ConversionContext context(Registry());
  std::string bytes;
  MessagePackWriter writer(&bytes);
  EXPECT_TRUE(WriteTree(tree, writer));
  writer.Finish(context);
  return bytes;
}

TEST(MessagePackWriter, TakesTheShortestFormOfTheKind) {
  const auto filled = [](size_t size) { return std::string(size, 'z'); };
  const struct {
    const char* why;
    BindingProperty tree;
    std::string start;
    size_t size;
  } cases[] = {
      {"just no fixint", Unsigned(128), "\xCC\x80", 2},
      {"16 bits", Unsigned(256), "\xCD\x01\0"s, 3},
      {"32 bits", Unsigned(65536), "\xCE\0\x01"s, 5},
      {"64 bits", Unsigned(uint64_t{1} << 32), "\xCF\0\0\0\x01"s, 9},
      {"signed stays so", Signed(128), "\xD1\0\x80"s, 3},
      {"lowest fixint", Signed(-32), "\xE0", 1},
      {"just no fixint", Signed(-33), "\xD0\xDF", 2},
      {"16 bits", Signed(-129), "\xD1\xFF\x7F", 3},
      {"32 bits", Signed(-32769), "\xD2\xFF\xFF\x7F\xFF", 5},
      {"64 bits", Signed(INT64_MIN), "\xD3\x80", 9},
      {"nothing is lost in 32 bits", Float(-0.0), "\xCA\x80", 5},
      {"not exact there", Float(0.1), "\xCB\x3F\xB9", 9},
      {"not a number", Float(NAN), "\xCA\x7F\xC0", 5},
      {"by name", Enum(-4),
       "\xA6"
       "Fabled",
       7},
      {"nameless", Enum(77), "\x4D", 1},
      {"fixstr", Text(filled(31)), "\xBFz", 32},
      {"str 8", Text(filled(32)), "\xD9\x20z", 34},
      {"str 16", Text(filled(256)), "\xDA\x01\0z"s, 259},
      {"str 32, above one block", Text(filled(65536)), "\xDB\0\x01\0\0z"s, 65541},
      {"bin 8", Blob("\xFF"), "\xC4\x01\xFF", 3},
      {"bin 16", Blob(filled(65535)), "\xC5\xFF\xFFz", 65538},
      {"fixarray", Tree("[[],{}]"), "\x92\x90\x80", 3},
      {"fixmap", Tree(R"({"a":null})"),
       "\x81\xA1"
       "a\xC0",
       4},
  };
  for (const auto& c : cases) {
    const std::string bytes = Packed(c.tree);
    EXPECT_EQ(bytes.substr(0, c.start.size()), c.start) << c.why;
    EXPECT_EQ(bytes.size(), c.size) << c.why;
  }
  BindingProperty list;
  list.GetOrAddElement(15);
  EXPECT_EQ(Packed(list).substr(0, 4), "\xDC\0\x10\xC0"s);
  list.GetOrAddElement(65535);
  EXPECT_EQ(Packed(list).substr(0, 6), "\xDD\0\x01\0\0\xC0"s);
}

TEST(MessagePackWriter, SizesAbove32BitsLeaveNothing) {
  if constexpr (sizeof(size_t) > 4) {
    const auto size = static_cast<size_t>(uint64_t{1} << 32);
    for (int form = 0; form < 3; ++form) {
      std::string bytes = "kept";
      MessagePackWriter writer(&bytes);
      ConversionContext context(Registry());
      writer.BeginCollection(1);
      const bool isWritten = form == 0   ? writer.BeginCollection(size)
                             : form == 1 ? writer.String({"", size})
                                         : writer.Blob({BytesOf("").data(), size});
      CheckWritten(context, isWritten, writer);
      writer.Finish(context);
      EXPECT_EQ(context.ErrorMessage(),
                "A size above 4294967295 cannot be written as MessagePack.");
      EXPECT_EQ(bytes, "kept");
    }
  }
}

}  // namespace
}  // namespace Kest
