#include "plugin/plugin_identity.h"

#include "log/logger.h"
#include "log/positional_format.h"

namespace Kest {

namespace {

struct TypePrefix {
  std::string_view type;
  std::string_view prefix;
};
constexpr TypePrefix kPrefixes[] = {{"backend", "vwm-be-"}, {"frontend", "vwm-fe-"}};
constexpr std::string_view kUnknownTypePrefix = "vwm-xx-";

std::string_view PrefixOf(std::string_view shortName, std::string_view type) {
  for (const TypePrefix& known : kPrefixes) {
    if (known.type == type) return known.prefix;
  }
  const std::string text =
      Format("GetFullNameFromShortNameAndType(\"%1\", \"%2\") called with an unknown type",
             shortName, type);
  LogError("            Plugin Manager| %s", text.c_str());
  return kUnknownTypePrefix;
}

}  // namespace

std::string VersionText(const ApiVersion& version) {
  return Format("%1.%2.%3", version.major, version.minor, version.patch);
}

bool IsCompatibleHost(const ApiVersion& host) {
  const ApiVersion& own = kPluginApiVersion;
  if (host.major != own.major) return false;
  return host.minor > own.minor || (host.minor == own.minor && host.patch >= own.patch);
}

PluginNames MakePluginNames(std::string_view shortName, std::string_view type,
                            std::string_view typeDetail) {
  PluginNames names;
  names.fullName = std::string(PrefixOf(shortName, type)).append(shortName);
  names.shortName = shortName;
  names.type = type;
  names.typeDetail = typeDetail;
  return names;
}

std::string UserAgent(const ApiVersion& host, std::string_view fullName) {
  return Format("KestClient/%1 (%2)", VersionText(host), fullName);
}

}  // namespace Kest
