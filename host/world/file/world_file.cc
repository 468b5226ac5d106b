#include "host/world/file/world_file.h"

#include "host/world/file/world_sections.h"

namespace Kest::Host {

Maybe<WorldData> ReadWorldFile(std::string_view text, std::string_view fileName) {
  const auto json = ReadJson(text);
  if (!json) return Failure{DescribeIssue(fileName, json.GetFailure()), 400};

  WorldData data;
  IssueReport report;
  FieldReader world(json.GetValue(), report);
  data.name = world.Text("name");
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
  if (report.failed()) return Failure{DescribeIssue(fileName, report.issue()), 400};
  return data;
}

}  // namespace Kest::Host
