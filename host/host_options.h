// What the development host is started with.
#pragma once

#include <cstdint>
#include <string>

#include "host/session/host_log.h"

namespace Kest::Host {

struct HostOptions {
  std::string pluginPath;
  std::string worldPath;  // empty: the sample world
  std::string address = "127.0.0.1";
  uint16_t port = 8510;  // 0: any free one
  uint64_t seed = 1;
  LogLevel logLevel = LogLevel::kOkay;
};

}  // namespace Kest::Host
