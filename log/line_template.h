// Turns one log record into one line, following a line template such as "#D| #L| #G| #M".
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "base/platform.h"
#include "log/fixed_buffer.h"
#include "log/log_names.h"

namespace Kest {

// What a target writes. The views are lent for the call.
struct LogRecord {
  LocalTime time = {};
  Level level = Level::kOkay;
  GroupMask groups = kNoGroups;
  std::string_view message = {};     // at most 4095 bytes
  std::string_view executable = {};  // file name of the running program
  // Milliseconds since the first use of the clock; nothing: of the system's.
  std::optional<int64_t> elapsed = {};
};

inline constexpr size_t kLineCapacity = 4096;
inline constexpr std::string_view kDefaultLineTemplate = "#D| #L| #G| #M";

// Writes the line for `record` into `buffer` and returns it: at most 4094 bytes of text, then a
// line feed unless the text ends in one already, then a NUL that the view does not count. A longer
// text is cut.
//   #D local time "2024-05-06T07:08:09.010"   #E executable   #G group names joined by ";"
//   #H seconds since the first use of the clock, "000012.345"   #L level name   #M message
//   #T thread id, eight upper-case hexadecimal digits   # and any other character: that character
std::string_view FormatLine(std::string_view lineTemplate, const LogRecord& record,
                            char (&buffer)[kLineCapacity]);

// "2024-05-06T07:08:09.010"
void AppendTimestamp(const LocalTime& time, FixedBuffer& out);
// "2024-05-06T07-08-09": fit for a file name.
void AppendFileNameTimestamp(const LocalTime& time, FixedBuffer& out);

}  // namespace Kest
