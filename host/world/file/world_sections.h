// The sections of a world file. Each reads its part into `data`; a section may refer only to what
// the sections before it have read. Issues go to the report.
#pragma once

#include "host/world/data/world_data.h"
#include "host/world/input/field_reader.h"

namespace Kest::Host {

void ReadCollections(FieldReader& world, IssueReport& report, WorldData& data);
void ReadDefinitions(FieldReader& world, IssueReport& report, WorldData& data);
void ReadQueries(FieldReader& world, IssueReport& report, WorldData& data);
void ReadOdds(FieldReader& world, IssueReport& report, WorldData& data);
void ReadRecipes(FieldReader& world, IssueReport& report, WorldData& data);
void ReadPlayer(FieldReader& world, IssueReport& report, WorldData& data);
void ReadService(FieldReader& world, IssueReport& report, WorldData& data);
void ReadConfiguration(FieldReader& world, IssueReport& report, WorldData& data);
void ReadMessages(FieldReader& world, IssueReport& report, WorldData& data);
void ReadLootData(FieldReader& world, IssueReport& report, WorldData& data);

// One waiting message; its content is in "params" (strings) or in "body" (any value, which
// becomes the only string).
LoginMessage ReadLoginMessage(const Json& value, IssueReport& report);

}  // namespace Kest::Host
