#include "host/session/event_stream.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/golden.h"

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
  EventStream stream({.events = 4, .bytes = kPlenty});
  AppendNumbered(10, &stream);
  EXPECT_TRUE(Testing::GoldenCases("tests/host/resumed.txt", [&](const std::string& input) {
    uint64_t position = std::stoull(input);
    const std::string text = stream.Read(&position, kPlenty);
    EXPECT_EQ(position, 10u);
    return text.substr(0, text.find("\nevent: resource"));
  }));
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

TEST(EventStream, NamesEachControlOnceToThoseWhoReadNow) {
  EventStream stream;
  stream.NoteControl("SetClock");
  uint64_t seen = stream.ControlCount();
  for (const char* id : {"SetFaults", "AddFault", "SetFaults"}) stream.NoteControl(id);
  EXPECT_EQ(stream.ReadControls(&seen),
            "event: control\ndata: {\"operationIds\":[\"AddFault\",\"SetFaults\"]}\n\n");
  EXPECT_EQ(stream.ReadControls(&seen), "");
  EXPECT_EQ(stream.Held().last, 0u) << "they have no ids";
}

}  // namespace
}  // namespace Kest::Host
