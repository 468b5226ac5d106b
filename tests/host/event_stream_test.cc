#include "host/session/event_stream.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Kest::Host {
namespace {

constexpr size_t kPlenty = 1 << 20;

void AppendNumbered(int count, EventStream* stream) {
  for (int i = 1; i <= count; ++i) stream->Append("/p", "Update", std::to_string(i));
}

TEST(EventStream, WritesOneFrameForEachEventOnOneLine) {
  EventStream stream;
  stream.Append("/tav-loot/v1/\"x\"", "Create", "{\"a\":\r\n1}");
  stream.Append("/bad\xff", "Delete", "");
  uint64_t position = 0;
  EXPECT_EQ(
      stream.Read(&position, kPlenty),
      "id: 1\nevent: resource\n"
      "data: {\"uri\":\"/tav-loot/v1/\\\"x\\\"\",\"eventType\":\"Create\",\"data\":{\"a\":  1}}"
      "\n\n"
      "id: 2\nevent: resource\n"
      "data: {\"uri\":\"/bad\xEF\xBF\xBD\",\"eventType\":\"Delete\"}\n\n");
  EXPECT_EQ(position, 2u);
  EXPECT_EQ(stream.Read(&position, kPlenty), "");
}

TEST(EventStream, ResumesWhereTheReaderStoppedAndNamesWhatItLost) {
  const struct {
    uint64_t position;
    const char* gap;  // the data of the gap event; empty: none
    uint64_t firstEvent;
  } kCases[] = {{0, R"({"from":1,"to":6,"restarted":false})", 7},
                {4, R"({"from":5,"to":6,"restarted":false})", 7},
                {6, "", 7},
                {8, "", 9},
                {11, R"({"from":1,"to":6,"restarted":true})", 7}};
  EventStream stream({.events = 4, .bytes = kPlenty});
  AppendNumbered(10, &stream);
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.position);
    uint64_t position = c.position;
    const std::string text = stream.Read(&position, kPlenty);
    const std::string gap =
        *c.gap == '\0' ? "" : std::string("id: 6\nevent: gap\ndata: ") + c.gap + "\n\n";
    EXPECT_TRUE(text.starts_with(gap + "id: " + std::to_string(c.firstEvent) + "\nevent: resource"))
        << text;
    EXPECT_EQ(position, 10u);
  }
}

TEST(EventStream, HoldsABoundedNumberOfBytesButAlwaysTheNewestEvent) {
  EventStream stream({.events = 1000, .bytes = 400});
  AppendNumbered(50, &stream);
  const EventStream::Range held = stream.Held();
  EXPECT_EQ(held.last, 50u);
  EXPECT_GT(held.first, 40u);
  stream.Append("/big", "Update", '"' + std::string(1000, 'x') + '"');
  EXPECT_EQ(stream.Held().first, 51u);
}

TEST(EventStream, ReadsInPiecesWithoutLosingAny) {
  EventStream stream;
  AppendNumbered(100, &stream);
  uint64_t position = 0;
  std::string inPieces;
  for (std::string piece; !(piece = stream.Read(&position, 200)).empty();) {
    EXPECT_LE(piece.size(), 200u);
    inPieces += piece;
  }
  uint64_t again = 0;
  EXPECT_EQ(inPieces, stream.Read(&again, kPlenty));
}

}  // namespace
}  // namespace Kest::Host
