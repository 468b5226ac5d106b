// The sections of a world file. Each reads its part into `data`; a section may refer only to what
// the sections before it have read. Issues go to the readers.
#pragma once

#include "host/world/data/world_data.h"
#include "host/world/input/field_reader.h"

namespace Kest::Host {

void ReadCollections(FieldReader& world, WorldData& data);
void ReadDefinitions(FieldReader& world, WorldData& data);
void ReadQueries(FieldReader& world, WorldData& data);
void ReadOdds(FieldReader& world, WorldData& data);
void ReadRecipes(FieldReader& world, WorldData& data);
void ReadPlayer(FieldReader& world, WorldData& data);
void ReadService(FieldReader& world, WorldData& data);
void ReadConfiguration(FieldReader& world, WorldData& data);
void ReadMessages(FieldReader& world, WorldData& data);
void ReadLootData(FieldReader& world, WorldData& data);
void ReadState(FieldReader& world, WorldData& data);
void ReadSteps(FieldReader& world, WorldData& data);

// Notes what is probably not meant: unknown types and rarities, texts of nothing, unused tables.
// REQUIRES: the sections have been read without an issue.
void WarnOfWorld(FieldReader& world, const WorldData& data);

// Puts the collections into `world` as ReadCollections reads them.
void WriteCollections(const PlatformCollections& collections, Json& world);

// One waiting message; its content is in "params" (strings) or in "body" (any value, which
// becomes the only string).
LoginMessage ReadLoginMessage(FieldReader& message);

}  // namespace Kest::Host
