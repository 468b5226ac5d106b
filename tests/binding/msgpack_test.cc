#include "tests/binding/tree_text.h"

namespace Kest {
namespace {

using namespace Samples;
using namespace std::string_literals;

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

// The shorter ones are in written.txt.
TEST(MessagePackWriter, ALongValueHasALongHead) {
  const std::string characters(65536, 'z');
  BindingProperty list;
  list.GetOrAddElement(65535);
  const std::tuple<BindingProperty, std::string, size_t> cases[] = {
      {Text(characters), "\xDB\0\x01\0\0z"s, 65541},
      {Blob(characters.substr(1)), "\xC5\xFF\xFFz", 65538},
      {list, "\xDD\0\x01\0\0\xC0"s, 65541}};
  for (const auto& [tree, start, size] : cases) {
    ConversionContext context(Registry());
    std::string bytes;
    WritePacked(context, tree, &bytes);
    EXPECT_EQ(bytes.substr(0, start.size()), start);
    EXPECT_EQ(bytes.size(), size);
  }
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
