#include "client/result_handler.h"

#include "log/logger.h"

namespace Kest::Client {

void LogUnreadableResult(const std::string& pluginName, std::string_view typeName,
                         std::string_view text) {
  LogError("%s: Couldn't convert SVDS DTO %s to C++ from %s", pluginName.c_str(),
           std::string(typeName).c_str(), std::string(text).c_str());
}

}  // namespace Kest::Client
