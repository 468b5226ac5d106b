// The plugin's lines of level 2 and up to 2: each must be explained by a fault that was put in.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/audit/finding.h"

namespace Kest::Host {

enum Fault : uint32_t {
  kFaultService = 1,    // a service was made to fail
  kFaultSignedOut = 2,  // no player was signed in
  kFaultRefused = 4,    // a request was not taken
  kFaultMessage = 8,    // a message was malformed
  kFaultToken = 16,     // there was no token
  kFaultMemory = 32,    // an allocation failed
  kFaultStop = 64,      // the plugin was stopped in the middle
};

class LogWatch {
 public:
  void NoteFault(uint32_t fault) { faults_ |= fault; }
  uint32_t Faults() const { return faults_; }
  void Take(int32_t level, std::string_view line);
  // Reports the first error that nothing explains, and forgets the lines.
  void Check(Findings* findings);

 private:
  uint32_t faults_ = 0;
  std::vector<std::string> errors_;
};

}  // namespace Kest::Host
