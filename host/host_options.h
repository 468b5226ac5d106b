// What the development host is started with.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/auditor/audit_mode.h"
#include "host/clock/host_clock.h"
#include "host/session/host_log.h"

namespace Kest::Host {

struct HostOptions {
  std::string pluginPath;
  std::string worldPath;  // empty: the scenario
  std::string address = "127.0.0.1";
  uint16_t port = 8510;  // 0: any free one
  uint64_t seed = 1;
  ClockSetting clock = {};
  std::vector<std::string> allowedOrigins = {};  // of pages, besides loopback
  std::string assetFolder = {};     // of files that pages find beside the plugin; empty: none
  bool signsIn = true;              // the player is signed in when a session begins
  bool untilInputCloses = false;    // ends also when standard input is closed
  std::string scenario = "sample";  // of those inside the program
  std::string stateFolder = {};     // keeps the world; empty: nothing is kept
  bool followsWorld = false;        // a saved world file takes effect
  bool followsPlugin = false;       // a rebuilt library is loaded
  AuditMode audit = AuditMode::kOff;
  std::string recordPath = {};  // of what crosses the plugin's interface; empty: not recorded
  LogSettings log = {};
};

}  // namespace Kest::Host
