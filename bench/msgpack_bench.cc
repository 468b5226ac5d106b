// MessagePack to a tree, against msgpack-cxx: both own their strings afterwards.
// One iteration handles the whole document, that of the JSON benchmarks.
#define MSGPACK_NO_BOOST

#include <msgpack.hpp>
#include <string>

#include "bench/allocation_counter.h"
#include "bench/comparison.h"
#include "bench/json_data.h"
#include "binding/json/json_adapter.h"
#include "binding/msgpack/msgpack_reader.h"
#include "binding/msgpack/msgpack_writer.h"

namespace Kest::Bench {
namespace {

std::string Pack(const BindingProperty& tree) {
  ConversionContext context(LootRegistry());
  std::string bytes;
  MessagePackWriter writer(&bytes);
  CheckWritten(context, WriteTree(tree, writer), writer);
  writer.Finish(context);
  return bytes;
}

const std::string& SampleBytes() {
  static const std::string bytes = [] {
    ConversionContext context(LootRegistry());
    return Pack(ReadJson(context, SampleText()));
  }();
  return bytes;
}

BindingProperty Unpack(ConversionContext& context, const std::string& bytes) {
  size_t consumed = 0;
  return ReadMessagePack(context, {reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()},
                         &consumed);
}

void ReadTree() {
  ConversionContext context(LootRegistry());
  Keep(Unpack(context, SampleBytes()));
  Require(context.Ok(), "MessagePack to tree failed");
}

void ReadMsgpackCxx() {
  // Without a reference function it copies strings into the zone of the handle.
  const msgpack::object_handle tree = msgpack::unpack(SampleBytes().data(), SampleBytes().size());
  Keep(tree.get());
}

}  // namespace

void AddRows(Table& table) {
  ConversionContext check(LootRegistry());
  Require(Pack(Unpack(check, SampleBytes())) == SampleBytes(), "MessagePack was read wrongly");
  table.Compare("MessagePack to tree", ReadTree, "msgpack-cxx, owned strings", ReadMsgpackCxx,
                AtLeast(1.5));
  table.Value("MessagePack to tree: allocations", Allocations(ReadTree), "", 30);
}

}  // namespace Kest::Bench
