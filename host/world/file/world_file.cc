#include "host/world/file/world_file.h"

#include <deque>

#include "host/json/json_text.h"
#include "host/world/file/shipped_worlds.h"
#include "host/world/file/world_generator.h"
#include "host/world/file/world_sections.h"

namespace Kest::Host {
namespace {

constexpr size_t kMostLayers = 8;
constexpr int64_t kMostGenerated = 20'000;

Maybe<WorldText> FindShipped(const std::string& extends, const std::string&) {
  if (const std::string_view text = ShippedWorld(extends); !text.empty()) {
    return WorldText{extends, std::string(text)};
  }
  return Failure{"there is no world " + JsonString(extends), 404};
}

// One file, and how it differs from the one it extends.
struct Layer {
  Document document;
  std::string extends;  // empty: it extends no other
  std::vector<std::string> without;
  int64_t generatedItems = 0;
  uint64_t generatorSeed = 0;
};

// What a file says of itself as a layer; the sections are read of all layers together.
Maybe<Layer> ReadLayer(const WorldText& file, uint64_t seed) {
  auto document = Document::FromYaml(file.name, file.text);
  if (!document) return document.GetFailure();
  Layer layer{std::move(document.GetValue()), "", {}};
  FieldReader fields(layer.document);
  if (!fields.ok()) return fields.failure();
  if (fields.Find("extends") != nullptr) layer.extends = fields.String("extends");
  layer.without = fields.StringsOr("without");
  FieldReader generate(fields.ObjectOr("generate"), fields);
  layer.generatedItems = generate.IntegerOr("items", 0, 0, kMostGenerated);
  layer.generatorSeed = generate.UnsignedOr("seed", seed);
  if (!generate.Finish()) return fields.failure();
  return layer;
}

// `layer` put over `base`, with what it has made up between the two.
Maybe<Document> PutOver(Document base, Layer layer, std::deque<WorldText>* texts) {
  if (layer.generatedItems != 0) {
    texts->push_back({"generated", GeneratedWorld(layer.generatedItems, layer.generatorSeed)});
    auto made = Document::FromJson(texts->back().name, texts->back().text);
    if (!made) return made.GetFailure();
    base = Document::Layered(std::move(base), std::move(made.GetValue()), layer.without);
    layer.without.clear();
  }
  return Document::Layered(std::move(base), std::move(layer.document), layer.without);
}

Maybe<WorldText> FindBase(const Layer& layer, const WorldReading& reading, const std::string& from,
                          bool tooMany) {
  FieldReader fields(layer.document);
  if (tooMany) {
    fields.FailAt("extends", "worlds extend each other without end");
    return fields.failure();
  }
  auto base = (reading.findBase ? reading.findBase : FindShipped)(layer.extends, from);
  if (base) return base;
  fields.FailAt("extends", base.GetFailure().text);
  return fields.failure();
}

// The file put over what it extends. The texts go to `texts`.
Maybe<Document> ReadLayers(const WorldText& file, const WorldReading& reading,
                           std::deque<WorldText>* texts) {
  std::vector<Layer> layers;  // the file first
  texts->push_back(file);
  while (true) {
    auto layer = ReadLayer(texts->back(), reading.seed);
    if (!layer) return layer.GetFailure();
    layers.push_back(std::move(layer.GetValue()));
    if (layers.back().extends.empty()) break;
    auto base = FindBase(layers.back(), reading, texts->back().name, layers.size() == kMostLayers);
    if (!base) return base.GetFailure();
    texts->push_back(std::move(base.GetValue()));
  }
  if (layers.size() == 1 && layers[0].generatedItems == 0) return std::move(layers[0].document);
  auto document = Document::FromJson("nothing", "{}");
  for (auto layer = layers.rbegin(); document && layer != layers.rend(); ++layer) {
    document = PutOver(std::move(document.GetValue()), std::move(*layer), texts);
  }
  return document;
}

void ReadSections(FieldReader& world, WorldData& data) {
  world.StringOr("$schema", "");
  world.StringOr("extends", "");
  world.StringsOr("without");
  world.ObjectOr("generate");
  data.name = world.String("name");
  data.description = world.StringOr("description", "");
  ReadCollections(world, data);
  ReadDefinitions(world, data);
  ReadQueries(world, data);
  ReadOdds(world, data);
  ReadRecipes(world, data);
  ReadPlayer(world, data);
  ReadService(world, data);
  ReadConfiguration(world, data);
  ReadMessages(world, data);
  ReadLootData(world, data);
  ReadState(world, data);
  ReadSteps(world, data);
}

}  // namespace

Maybe<WorldData> ReadWorldFile(const WorldText& file, const WorldReading& reading) {
  std::deque<WorldText> texts;  // do not move
  const auto document = ReadLayers(file, reading, &texts);
  if (!document) return document.GetFailure();
  WorldData data;
  FieldReader world(document.GetValue());
  ReadSections(world, data);
  if (!world.Finish()) return world.failure();
  if (reading.warnings != nullptr) {
    WarnOfWorld(world, data);
    *reading.warnings = world.Warnings();
  }
  return data;
}

}  // namespace Kest::Host
