// JSON text to a tree, to registered structures, and back, against the same work written by hand
// with peers. One iteration handles the whole document.
//
// The first peer is compiled at its best.
#if defined(__SSE2__)
#define RAPIDJSON_SSE2
#endif

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

void ReadTree() {
  ConversionContext context(LootRegistry());
  Keep(ReadJson(context, SampleText()));
  Require(context.Ok(), "text to tree failed");
}

void ParseRapidJson(rapidjson::Document* document) {
  document->Parse<kPeerFlags>(SampleText().data(), SampleText().size());
  Require(!document->HasParseError(), "RapidJSON refuses the text");
}

void ReadRapidJson() {
  rapidjson::Document document;
  ParseRapidJson(&document);
  Keep(document);
}

void ReadStructures() {
  ConversionContext context(LootRegistry());
  Definitions definitions;
  ReadJsonValue(context, "<value>", SampleText(), &definitions);
  Require(context.Ok(), "text to structures failed");
  Keep(definitions);
}

void CheckStructures() {
  ConversionContext context(LootRegistry());
  Definitions read;
  ReadJsonValue(context, "<value>", SampleText(), &read);
  std::string written;
  WriteJsonValue(context, read, &written);
  Require(written == SampleText(), "the document was read wrongly");
}

void ReadStructuresRapidJson() {
  rapidjson::Document document;
  ParseRapidJson(&document);
  Definitions definitions;
  Require(ConvertRapidJson(document, &definitions), "RapidJSON's values do not convert");
  Keep(definitions);
}

void ReadStructuresNlohmann() {
  Definitions definitions;
  ConvertNlohmann(nlohmann::json::parse(SampleText()), &definitions);
  Keep(definitions);
}

}  // namespace

void AddRows(Table& table) {
  table.Compare("JSON text to tree", ReadTree, "RapidJSON Document", ReadRapidJson, AtLeast(3));
  const Allocated allocated = CountAllocations(ReadTree);
  table.Value("JSON text to tree: allocations", static_cast<double>(allocated.count), "", 25);
  table.Value("JSON text to tree: bytes allocated per byte of text",
              static_cast<double>(allocated.bytes) / static_cast<double>(SampleText().size()), "",
              3);
  CheckStructures();
  table.Compare("JSON text to structures", ReadStructures, "RapidJSON by hand",
                ReadStructuresRapidJson, AtLeast(2));
  table.Compare("JSON text to structures", ReadStructures, "nlohmann-json", ReadStructuresNlohmann,
                AtLeast(2.5));
  std::string text;
  const auto writeItems = [&] {
    text.clear();
    ConversionContext context(LootRegistry());
    WriteJsonValue(context, SampleItems(), &text);
    Keep(text.data());
  };
  rapidjson::StringBuffer buffer;
  const auto writeItemsRapidJson = [&] {
    buffer.Clear();
    WriteRapidJson(SampleItems(), &buffer);
    Keep(buffer.GetString());
  };
  table.Compare("map of 5,000 items to JSON", writeItems, "RapidJSON by hand", writeItemsRapidJson,
                AtLeast(2));
  table.Value("map of 5,000 items to JSON: allocations", Allocations(writeItems), "", 0);
}

}  // namespace Kest::Bench
