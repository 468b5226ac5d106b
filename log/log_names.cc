#include "log/log_names.h"

#include <array>

namespace Kest {
namespace {

// Indexed by Level. They stand in log lines, in a column of six characters.
constexpr std::array<std::string_view, 4> kLevelNames = {"  OKAY", "  WARN", " ERROR", "ALWAYS"};

// Indexed by the bit of the mask.
constexpr std::array<std::string_view, 8> kGroupNames = {"DBG", "GEN", "XTR", "PRF",
                                                         "MEM", "DSK", "NET", "TST"};

}  // namespace

std::string_view LevelName(Level level) {
  const auto index = static_cast<uint32_t>(level);
  return index < kLevelNames.size() ? kLevelNames[index] : kLevelNames.back();
}

std::string_view GroupName(uint32_t bit) {
  return bit < kGroupNames.size() ? kGroupNames[bit] : "???";
}

}  // namespace Kest
