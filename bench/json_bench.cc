// JSON text to a tree, to registered structures, and back, against the same work written by hand
// with two peers. One iteration handles the whole document.
//
// The first peer is compiled at its best.
#if defined(__SSE2__)
#define RAPIDJSON_SSE2
#endif

#include <benchmark/benchmark.h>
#include <rapidjson/document.h>

#include <nlohmann/json.hpp>
#include <string>

#include "bench/allocation_counter.h"
#include "bench/comparison.h"
#include "bench/json_data.h"
#include "bench/json_peers.h"
#include "binding/json/json_adapter.h"

namespace Kest::Bench {
namespace {

void ReportBytes(benchmark::State& state, size_t bytes) {
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes));
}

void TextToTree(benchmark::State& state) {
  const std::string& text = SampleText();
  const AllocationScope scope;
  for (auto _ : state) {
    ConversionContext context(LootRegistry());
    const BindingProperty tree = ReadJson(context, text);
    if (!context.Ok()) return state.SkipWithError(context.ErrorMessage().c_str());
    benchmark::DoNotOptimize(tree);
  }
  ReportAllocations(state, scope);
  state.counters["memory per text"] =
      static_cast<double>(scope.Bytes()) / static_cast<double>(state.iterations() * text.size());
  ReportBytes(state, text.size());
}
BENCHMARK(TextToTree)->Unit(benchmark::kMillisecond);

void TextToRapidJsonDocument(benchmark::State& state) {
  const std::string& text = SampleText();
  for (auto _ : state) {
    rapidjson::Document document;
    document.Parse<kPeerFlags>(text.data(), text.size());
    if (document.HasParseError()) return state.SkipWithError("parse error");
    benchmark::DoNotOptimize(document);
  }
  ReportBytes(state, text.size());
}
BENCHMARK(TextToRapidJsonDocument)->Unit(benchmark::kMillisecond);

void TextToStructures(benchmark::State& state) {
  const std::string& text = SampleText();
  ConversionContext check(LootRegistry());
  Definitions read;
  ReadJsonValue(check, "<value>", text, &read);
  std::string written;
  WriteJsonValue(check, read, &written);
  if (written != text) return state.SkipWithError("the document was read wrongly");
  for (auto _ : state) {
    ConversionContext context(LootRegistry());
    Definitions definitions;
    ReadJsonValue(context, "<value>", text, &definitions);
    if (!context.Ok()) return state.SkipWithError(context.ErrorMessage().c_str());
    benchmark::DoNotOptimize(definitions);
  }
  ReportBytes(state, text.size());
}
BENCHMARK(TextToStructures)->Unit(benchmark::kMillisecond);

void TextToStructuresRapidJson(benchmark::State& state) {
  const std::string& text = SampleText();
  for (auto _ : state) {
    rapidjson::Document document;
    document.Parse<kPeerFlags>(text.data(), text.size());
    Definitions definitions;
    if (document.HasParseError() || !ConvertRapidJson(document, &definitions)) {
      return state.SkipWithError("conversion failed");
    }
    benchmark::DoNotOptimize(definitions);
  }
  ReportBytes(state, text.size());
}
BENCHMARK(TextToStructuresRapidJson)->Unit(benchmark::kMillisecond);

void TextToStructuresNlohmann(benchmark::State& state) {
  const std::string& text = SampleText();
  for (auto _ : state) {
    Definitions definitions;
    ConvertNlohmann(nlohmann::json::parse(text), &definitions);
    benchmark::DoNotOptimize(definitions);
  }
  ReportBytes(state, text.size());
}
BENCHMARK(TextToStructuresNlohmann)->Unit(benchmark::kMillisecond);

void ItemsToText(benchmark::State& state) {
  const auto& items = SampleItems();
  std::string text;
  const auto write = [&] {
    text.clear();
    ConversionContext context(LootRegistry());
    WriteJsonValue(context, items, &text);
    benchmark::DoNotOptimize(text.data());
  };
  write();
  const AllocationScope scope;
  for (auto _ : state) write();
  ReportAllocations(state, scope);
  ReportBytes(state, text.size());
}
BENCHMARK(ItemsToText)->Unit(benchmark::kMillisecond);

void ItemsToTextRapidJson(benchmark::State& state) {
  const auto& items = SampleItems();
  rapidjson::StringBuffer buffer;
  for (auto _ : state) {
    buffer.Clear();
    WriteRapidJson(items, &buffer);
    benchmark::DoNotOptimize(buffer.GetString());
  }
  ReportBytes(state, buffer.GetSize());
}
BENCHMARK(ItemsToTextRapidJson)->Unit(benchmark::kMillisecond);

const bool promised[] = {
    CompareWithPeer("text to tree / RapidJSON Document", "TextToTree", "TextToRapidJsonDocument",
                    1.0),
    LimitCounter("text to tree: allocations", "TextToTree", "allocations", 30),
    LimitCounter("text to tree: bytes allocated per byte of text", "TextToTree", "memory per text",
                 3),
    CompareWithPeer("text to structures / RapidJSON by hand", "TextToStructures",
                    "TextToStructuresRapidJson", 1.0),
    CompareWithPeer("text to structures / nlohmann-json", "TextToStructures",
                    "TextToStructuresNlohmann", 2.5),
    CompareWithPeer("map of items to text / RapidJSON by hand", "ItemsToText",
                    "ItemsToTextRapidJson", 1.0),
    LimitCounter("map of items to text: allocations", "ItemsToText", "allocations", 0),
};

}  // namespace
}  // namespace Kest::Bench
