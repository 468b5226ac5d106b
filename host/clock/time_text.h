// Times of day as strings: "2030-01-01T12:00:00.250Z", always UTC.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Kest::Host {

// The last millisecond that has a string of that form.
inline constexpr int64_t kLatestTime = 253'402'300'799'999;

// What ParseTime reads, for messages.
inline constexpr std::string_view kTimeRule =
    "a time from 1970 to 9999 such as 2030-01-01T12:00:00Z";

// REQUIRES: from 1970 to kLatestTime. `milliseconds` since 1970.
std::string FormatTime(int64_t milliseconds);

// Reads a time from 1970 on; the fraction of one to three digits may be left out. Nothing for any
// other string.
std::optional<int64_t> ParseTime(std::string_view text);

}  // namespace Kest::Host
