#include "host/world/file/world_file.h"

#include "host/world/file/world_sections.h"

namespace Kest::Host {

Maybe<WorldData> ReadWorldFile(std::string_view text, std::string_view fileName) {
  const auto document = Document::FromYaml(fileName, text);
  if (!document) return document.GetFailure();

  WorldData data;
  FieldReader world(document.GetValue());
  data.name = world.String("name");
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
  if (!world.Finish()) return world.failure();
  return data;
}

}  // namespace Kest::Host
