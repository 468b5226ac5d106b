#include "host/scenario/plugin_copies.h"

#include <filesystem>
#include <system_error>

#include "base/platform.h"

namespace Kest::Host {

PluginCopies::~PluginCopies() {
  std::error_code error;
  for (const std::string& path : made_) std::filesystem::remove(path, error);
}

Maybe<std::string> PluginCopies::Make() {
  UuidBytes id = {};
  if (!CreateUuid(&id)) return Failure{"Cannot name a copy of " + path_};
  std::error_code error;
  const std::filesystem::path original(path_);
  const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
  const std::string copy =
      (folder / (original.stem().string() + "-" + FormatUuid(id) + original.extension().string()))
          .string();
  if (!error) std::filesystem::copy_file(original, copy, error);
  if (error) return Failure{"Cannot copy the plugin " + path_ + ": " + error.message()};
  made_.push_back(copy);
  return copy;
}

}  // namespace Kest::Host
