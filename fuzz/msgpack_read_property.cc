// Any bytes as MessagePack. A value that is read means the same to a plain reader, from its own
// bytes alone, and when it is written again, which takes no more bytes; it is truncated when one
// byte is missing. What is not read fails as it does with the plain reader.
#include "binding/convert/read_value.h"
#include "binding/msgpack/msgpack_reader.h"
#include "binding/msgpack/msgpack_writer.h"
#include "fuzz/described_tree.h"
#include "fuzz/failure_messages.h"
#include "fuzz/fuzz_support.h"
#include "fuzz/plain_msgpack.h"
#include "fuzz/properties.h"

namespace Kest::Fuzz {
namespace {

constexpr size_t kUntouched = SIZE_MAX;

struct Reading {
  BindingProperty tree;
  std::string failure;
  size_t consumed = kUntouched;
};

Reading Read(std::string_view bytes) {
  const DecoderBounds bounds;
  ConversionContext context;
  Reading reading;
  reading.tree = ReadMessagePack(
      context, {reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()}, &reading.consumed);
  reading.failure = context.ErrorMessage();
  return reading;
}

std::string Write(const BindingProperty& tree) {
  ConversionContext context;
  std::string bytes;
  MessagePackWriter writer(&bytes);
  CheckWritten(context, WriteTree(tree, writer), writer);
  writer.Finish(context);
  Require(context.Ok(), "every tree can be written", context.ErrorMessage());
  return bytes;
}

void CheckBytes(std::string_view bytes) {
  const Reading whole = Read(bytes);
  const auto [plain, plainFailure] = ReadPlainMessagePack(bytes);
  if (!whole.failure.empty()) {
    RequireListed(whole.failure, {kMessagePackFailures, kMessagePackTruncations});
    Require(!plain, "what is not read is no value", whole.failure);
    if (!plainFailure.empty()) RequireSame(plainFailure, whole.failure, "the failure is named");
    Require(whole.tree.IsEmpty(), "a failure returns nothing", whole.failure);
    Require(whole.consumed == kUntouched, "a failure consumes nothing", whole.failure);
    return;
  }
  Require(whole.consumed >= 1 && whole.consumed <= bytes.size(), "a value has bytes of its own");
  const std::string description = ExactTree(whole.tree);
  if (plain) RequireSame(ExactTree(*plain), description, "two readers read the same");
  const Reading alone = Read(bytes.substr(0, whole.consumed));
  Require(alone.consumed == whole.consumed, "what follows does not matter", alone.failure);
  RequireSame(description, ExactTree(alone.tree), "what follows does not matter");
  RequireListed(Read(bytes.substr(0, whole.consumed - 1)).failure, {kMessagePackTruncations});

  const std::string written = Write(whole.tree);
  Require(written.size() <= whole.consumed, "the shortest forms are written", description);
  const Reading again = Read(written);
  Require(again.failure.empty(), "what was written is read", again.failure);
  Require(again.consumed == written.size(), "one value was written", description);
  RequireSame(DescribeTree(whole.tree, TreeView::kMessagePack).text, ExactTree(again.tree),
              "written and read again");
}

}  // namespace

void CheckMsgpackRead(std::string_view input) {
  CheckBytes(Stretched(input, '\xC1'));
}

}  // namespace Kest::Fuzz
