// JSON text to a tree beside what it cannot reach: a parser of whole vectors of bytes, whose DOM is
// a tape that is read only and leaves numbers and names to later, and a plain copy of the text.
#include <simdjson.h>

#include <string>

#include "bench/comparison.h"
#include "bench/json_data.h"
#include "binding/json/json_adapter.h"

namespace Kest::Bench {

void AddRows(Table& table) {
  const std::string& text = SampleText();
  const auto readTree = [&] {
    ConversionContext context(LootRegistry());
    Keep(ReadJson(context, text));
    Require(context.Ok(), "text to tree failed");
  };
  const auto readSimdjson = [&] {
    // A parser of its own each time: ours keeps no memory for the next text either.
    simdjson::dom::parser parser;
    simdjson::dom::element document;
    Require(parser.parse(text).get(document) == simdjson::SUCCESS, "simdjson refuses the text");
    Keep(document);
  };
  const auto copy = [&] {
    const std::string copied = text;
    Keep(copied.data());
  };
  table.Compare("JSON text to tree", readTree, "simdjson DOM", readSimdjson, NoGoal());
  table.Compare("JSON text to tree", readTree, "copy of the text", copy, NoGoal());
}

}  // namespace Kest::Bench
