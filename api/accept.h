// The encoding of a response body, by the Accept header of the request.
#pragma once

#include <cstdint>
#include <string_view>

namespace Kest {

enum class ResultFormat : uint8_t { kJson, kMessagePack };

// Reads a list of media ranges with qualities: "application/x-msgpack, application/json;q=0.5".
// JSON also matches "application/*" and "*/*"; the most specific range decides its quality.
// MessagePack is chosen only when its exact type is listed with a quality above JSON's, or with the
// same and JSON matched a wildcard. Everything else is JSON, even when neither is acceptable.
// Quality 0 excludes. A range with a quality that is no number from 0 to 1 is ignored.
ResultFormat ChooseResultFormat(std::string_view accept);

}  // namespace Kest
