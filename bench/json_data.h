// The documents of the JSON benchmarks, drawn from a fixed seed: the same on every run.
#pragma once

#include <string>
#include <unordered_map>

#include "binding/types/type_registry.h"
#include "loot/wire/loot_dtos.h"
#include "loot/wire/loot_resources.h"

namespace Kest::Bench {

using Definitions = Client::Loot::SVDS::PlayerLootDefinitionsDTO;
using Client::Loot::Api::PlayerLoot;

// A registry that knows all types of the documents.
const TypeRegistry& LootRegistry();

// 5,000 loot definitions, 2,000 recipes with slots, outputs and metadata, 5,000 player records.
const Definitions& SampleDefinitions();
// The same as JSON, about 4.4 MB.
const std::string& SampleText();

// 5,000 items by id.
const std::unordered_map<std::string, PlayerLoot>& SampleItems();

}  // namespace Kest::Bench
