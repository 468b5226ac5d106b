// MessagePack to a tree, against msgpack-cxx: both own their texts afterwards. One
// iteration handles the whole document, that of the JSON benchmarks.
#define MSGPACK_NO_BOOST

#include <benchmark/benchmark.h>

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

void ReportBytes(benchmark::State& state, size_t bytes) {
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes));
}

void BytesToTree(benchmark::State& state) {
  const std::string& bytes = SampleBytes();
  ConversionContext check(LootRegistry());
  if (Pack(Unpack(check, bytes)) != bytes) return state.SkipWithError("read wrongly");
  const AllocationScope scope;
  for (auto _ : state) {
    ConversionContext context(LootRegistry());
    const BindingProperty tree = Unpack(context, bytes);
    if (!context.Ok()) return state.SkipWithError(context.ErrorMessage().c_str());
    benchmark::DoNotOptimize(tree);
  }
  ReportAllocations(state, scope);
  ReportBytes(state, bytes.size());
}
BENCHMARK(BytesToTree)->Unit(benchmark::kMillisecond);

void BytesToMsgpackObject(benchmark::State& state) {
  const std::string& bytes = SampleBytes();
  for (auto _ : state) {
    // Without a reference function it copies texts into the zone of the handle.
    const msgpack::object_handle tree = msgpack::unpack(bytes.data(), bytes.size());
    benchmark::DoNotOptimize(tree.get());
  }
  ReportBytes(state, bytes.size());
}
BENCHMARK(BytesToMsgpackObject)->Unit(benchmark::kMillisecond);

const bool promised[] = {
    CompareWithPeer("MessagePack to tree / msgpack-cxx, owned texts", "BytesToTree",
                    "BytesToMsgpackObject", 1.5),
    LimitCounter("MessagePack to tree: allocations", "BytesToTree", "allocations", 30),
};

}  // namespace
}  // namespace Kest::Bench
