#include "host/simulation/log_watch.h"

namespace Kest::Host {
namespace {

constexpr int32_t kErrorLevel = 2;

struct Explanation {
  std::string_view part;  // of the line
  uint32_t faults;        // any of these
};
constexpr uint32_t kCallFailed =
    kFaultService | kFaultSignedOut | kFaultRefused | kFaultStop | kFaultMemory;
constexpr Explanation kExplanations[] = {
    {"Loot::RetrievePlayerLootAndDefinitions service async returned error", kCallFailed},
    {"Loot::GetClientConfiguration service async returned error", kCallFailed},
    {"Failed to get response for checkAndGrantNewPlayerChest", kCallFailed},
    {"Failed to acknowledge tav-loot notification", kCallFailed},
    {"Failed to retrieve tournament logo player inventory", kCallFailed},
    {"Failed to retrieve /tav-champions", kCallFailed},
    {"Failed to retrieve /tav-game-data", kCallFailed},
    {"/tav-game-data/assets/v1/", kFaultRefused | kFaultStop | kFaultMemory},
    {"Unable to load loot localization data", kFaultRefused | kFaultStop | kFaultMemory},
    {"missing JWT token", kFaultToken},
    {"Malformed champion mastery loot grant", kFaultMessage},
};

}  // namespace

void LogWatch::Take(int32_t level, std::string_view line) {
  if (level == kErrorLevel) errors_.emplace_back(line);
}

void LogWatch::Check(Findings* findings) {
  const bool memoryFailed = (faults_ & kFaultMemory) != 0;
  for (const std::string& line : errors_) {
    bool isExplained = memoryFailed;
    for (const Explanation& explanation : kExplanations) {
      isExplained |=
          (explanation.faults & faults_) != 0 && line.find(explanation.part) != std::string::npos;
    }
    if (!isExplained) {
      findings->Add("an error that is logged has a fault that explains it", "no error", line);
    }
  }
  errors_.clear();
}

}  // namespace Kest::Host
