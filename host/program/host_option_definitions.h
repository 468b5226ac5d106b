// The options of everything that runs a host.
#pragma once

#include <CLI/App.hpp>
#include <string>

#include "host/host_options.h"

namespace Kest::Host {

// Options that are not given leave `*options` as it is. The plugin is looked for in `folder` unless
// an option names it. A type name "a|b" lists the values of an option, FILE and DIR are paths.
void AddHostOptions(CLI::App& app, const std::string& folder, HostOptions* options);

// Those of them that decide what a run with a frozen clock returns: plugin, world, seed and time.
// `*options` has the time without which the clock is not frozen.
void AddRepeatableOptions(CLI::App& app, const std::string& folder, HostOptions* options);
// Of these, the one that names the plugin's library.
void AddPluginOption(CLI::App& app, const std::string& folder, std::string* path);

}  // namespace Kest::Host
