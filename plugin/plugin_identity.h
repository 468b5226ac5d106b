// Who this plugin is: its plugin API version with the rule of compatibility, and its names.
// Threads: any; nothing here keeps state.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Kest {

// A plugin API version, printed "18.0.0".
struct ApiVersion {
  uint32_t major = 0;
  uint32_t minor = 0;
  uint32_t patch = 0;

  friend bool operator==(const ApiVersion&, const ApiVersion&) = default;
};

// The version this plugin is built for.
inline constexpr ApiVersion kPluginApiVersion{18, 0, 0};

std::string VersionText(const ApiVersion& version);

// True when a host of that version can drive this plugin: the same major, and a minor and patch at
// least the plugin's own.
bool IsCompatibleHost(const ApiVersion& host);

// The names of one plugin. `fullName` is the type's prefix followed by the short name.
struct PluginNames {
  std::string fullName;   // "vwm-be-tav-loot"
  std::string shortName;  // "tav-loot"
  std::string type;       // "backend"
  std::string typeDetail;
};

// Builds the name record. A type other than "backend" and "frontend" gets the prefix "vwm-xx-" and
// one error line.
PluginNames MakePluginNames(std::string_view shortName, std::string_view type,
                            std::string_view typeDetail = {});

// "KestClient/18.0.0 (vwm-be-tav-loot)", with the host's version.
std::string UserAgent(const ApiVersion& host, std::string_view fullName);

}  // namespace Kest
