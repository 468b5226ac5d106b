#include <cmath>
#include <random>

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
    EXPECT_EQ(context.ErrorMessage(), "") << c.why;
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
    EXPECT_EQ(context.ErrorMessage(), c.failure) << c.why;
    EXPECT_EQ(consumed, 77u) << c.why;
  }
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
      {"unsigned", Unsigned(127), "\x7F", 1},
      {"just no fixint", Unsigned(128), "\xCC\x80", 2},
      {"16 bits", Unsigned(256), "\xCD\x01\0"s, 3},
      {"32 bits", Unsigned(65536), "\xCE\0\x01"s, 5},
      {"64 bits", Unsigned(uint64_t{1} << 32), "\xCF\0\0\0\x01"s, 9},
      {"signed", Signed(127), "\x7F", 1},
      {"signed stays so", Signed(128), "\xD1\0\x80"s, 3},
      {"lowest fixint", Signed(-32), "\xE0", 1},
      {"just no fixint", Signed(-33), "\xD0\xDF", 2},
      {"lowest of 8 bits", Signed(-128), "\xD0\x80", 2},
      {"16 bits", Signed(-129), "\xD1\xFF\x7F", 3},
      {"32 bits", Signed(-32769), "\xD2\xFF\xFF\x7F\xFF", 5},
      {"64 bits", Signed(INT64_MIN), "\xD3\x80", 9},
      {"nothing is lost in 32 bits", Float(-0.0), "\xCA\x80", 5},
      {"largest of 32 bits", Float(3.4028234663852886e38), "\xCA\x7F\x7F\xFF\xFF", 5},
      {"not exact there", Float(0.1), "\xCB\x3F\xB9", 9},
      {"too large there", Float(1e39), "\xCB\x48", 9},
      {"not a number", Float(NAN), "\xCA\x7F\xC0", 5},
      {"infinity", Float(-INFINITY), "\xCA\xFF\x80", 5},
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

TEST(MessagePackWriter, SizesAbove32BitsLeaveNothingBehind) {
  if constexpr (sizeof(size_t) > 4) {
    const auto size = static_cast<size_t>(uint64_t{1} << 32);
    for (int form = 0; form < 4; ++form) {
      std::string bytes = "kept";
      MessagePackWriter writer(&bytes);
      ConversionContext context(Registry());
      writer.BeginCollection(1);
      const bool isWritten = form == 0   ? writer.BeginCollection(size)
                             : form == 1 ? writer.BeginStructure(size)
                             : form == 2 ? writer.String({"", size})
                                         : writer.Blob({BytesOf("").data(), size});
      CheckWritten(context, isWritten, writer);
      writer.Finish(context);
      EXPECT_EQ(context.ErrorMessage(),
                "A size above 4294967295 cannot be written as MessagePack.");
      EXPECT_EQ(bytes, "kept");
    }
  }
}

BindingProperty RandomTree(std::mt19937_64& engine, int depth) {
  const auto below = [&engine](uint64_t end) { return engine() % end; };
  const uint64_t bits = engine() >> below(64);
  const std::string text(below(9) == 0 ? below(70'000) : below(40), static_cast<char>(bits));
  BindingProperty tree;
  switch (below(depth > 0 ? 9 : 7)) {
    case 0:
      return tree;
    case 1:
      return Bool(bits % 2 == 0);
    case 2:
      return Signed(static_cast<int64_t>(below(2) == 0 ? bits : 0 - bits));
    case 3:  // below, the form is that of signed numbers
      return Unsigned(bits | 128);
    case 4:
      return Float(static_cast<double>(static_cast<int64_t>(bits)) / 1024);
    case 5:
      return Text(text);
    case 6:
      return Blob(text);
    case 7:
      tree.SetCollection();
      for (uint64_t i = below(20); i > 0; --i) tree.Append() = RandomTree(engine, depth - 1);
      return tree;
    default:
      tree.SetStructure();
      for (uint64_t i = below(20); i > 0; --i) {
        tree.GetOrAddMember(text + std::to_string(below(99))) = RandomTree(engine, depth - 1);
      }
      return tree;
  }
}

TEST(MessagePackWriter, WhatIsWrittenReadsBackEqual) {
  std::mt19937_64 engine(301);
  for (int round = 0; round < 1000; ++round) {
    const BindingProperty tree = RandomTree(engine, 3);
    const std::string bytes = Packed(tree);
    ConversionContext context(Registry());
    size_t consumed = 0;
    ASSERT_TRUE(ReadMessagePack(context, BytesOf(bytes), &consumed) == tree) << "round " << round;
    ASSERT_EQ(consumed, bytes.size());
    // No part of it is whole.
    if (const size_t cut = engine() % bytes.size(); cut > 0 || bytes.size() == 1) {
      ReadMessagePack(context, BytesOf(bytes).first(cut), &consumed);
      ASSERT_FALSE(context.Ok()) << "round " << round;
    }
  }
}

}  // namespace
}  // namespace Kest
