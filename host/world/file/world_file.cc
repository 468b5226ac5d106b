#include "host/world/file/world_file.h"

#include "host/world/file/world_sections.h"

namespace Kest::Host {

Maybe<WorldData> ReadWorldFile(std::string_view text, std::string_view fileName) {
  const auto document = Document::FromYaml(fileName, text);
  if (!document) return document.GetFailure();

  WorldData data;
  IssueReport report(document.GetValue());
  FieldReader world(document.GetValue().root(), report);
  data.name = world.String("name");
  ReadCollections(world, report, data);
  ReadDefinitions(world, report, data);
  ReadQueries(world, report, data);
  ReadOdds(world, report, data);
  ReadRecipes(world, report, data);
  ReadPlayer(world, report, data);
  ReadService(world, report, data);
  ReadConfiguration(world, report, data);
  ReadMessages(world, report, data);
  ReadLootData(world, report, data);
  world.Finish();
  if (report.failed()) return report.failure();
  return data;
}

}  // namespace Kest::Host
