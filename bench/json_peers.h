// What one would write by hand with the peers for the same tasks.
#pragma once

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <unordered_map>

#include "bench/json_data.h"

namespace Kest::Bench {

// The flags that check what our reader checks.
inline constexpr unsigned kPeerFlags = rapidjson::kParseIterativeFlag |
                                       rapidjson::kParseValidateEncodingFlag |
                                       rapidjson::kParseFullPrecisionFlag;

bool ConvertRapidJson(const rapidjson::Value& value, Definitions* definitions);
void ConvertNlohmann(const nlohmann::json& value, Definitions* definitions);

// Writes the items as one object by id.
void WriteRapidJson(const std::unordered_map<std::string, PlayerLoot>& items,
                    rapidjson::StringBuffer* buffer);

}  // namespace Kest::Bench
