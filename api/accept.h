// Which encoding an answer's body gets, by the Accept header of the request.
#pragma once

#include <cstdint>
#include <string_view>

namespace Kest {

enum class ResultFormat : uint8_t { kJson, kMessagePack };

// Reads a list of media ranges with qualities: "application/x-msgpack, application/json;q=0.5".
// MessagePack has to be asked for by its name and wanted more than JSON, which stands for itself,
// "application/*" and "*/*" (the closest of these counts): by quality, or at the same quality by
// its name against a wildcard. JSON is the answer to everything else, also to what accepts neither.
// Quality 0 excludes. A range with a quality that is no number from 0 to 1 is passed over.
ResultFormat ChooseResultFormat(std::string_view accept);

}  // namespace Kest
