// Log levels and groups, and their names as they stand in log lines.
#pragma once

#include <cstdint>
#include <string_view>

namespace Kest {

// The severity of a line. The numbers cross to the host: never renumber.
enum class Level : int32_t { kOkay = 0, kWarning = 1, kError = 2, kAlways = 3 };

// A set of log groups, one bit each. 0 is a line of no group in particular.
using GroupMask = uint64_t;

inline constexpr GroupMask kNoGroups = 0;
inline constexpr GroupMask kGroupDebug = 1u << 0;
inline constexpr GroupMask kGroupGeneral = 1u << 1;
inline constexpr GroupMask kGroupExtra = 1u << 2;
inline constexpr GroupMask kGroupPerformance = 1u << 3;
inline constexpr GroupMask kGroupMemory = 1u << 4;
inline constexpr GroupMask kGroupDisk = 1u << 5;
inline constexpr GroupMask kGroupNetwork = 1u << 6;
inline constexpr GroupMask kGroupTest = 1u << 7;

// Six characters: "  OKAY", "  WARN", " ERROR", "ALWAYS"; an unknown level is named "ALWAYS".
std::string_view LevelName(Level level);

// Three characters: "DBG", "GEN", "XTR", "PRF", "MEM", "DSK", "NET", "TST"; "???" from bit 8 on.
std::string_view GroupName(uint32_t bit);

}  // namespace Kest
