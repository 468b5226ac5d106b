#include "host/controls/log_controls.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "host/http/http_responses.h"
#include "host/json/json_text.h"

namespace Kest::Host {
namespace {

constexpr LogLevel kPluginLevels[] = {LogLevel::kOkay, LogLevel::kWarning, LogLevel::kError,
                                      LogLevel::kAlways};

std::string_view NameOf(LogLevel level) {
  return LogLevelName(static_cast<int32_t>(level));
}

Json LevelJson(const HostLog& log) {
  return {{"level", NameOf(log.pluginLevel())}};
}

// Holds for the sessions to come as well.
Maybe<Json> SetLevel(HostLog* log, SessionManager* sessions, const HostCall& call) {
  FieldReader fields(call.body);
  const std::string word = fields.String("level");
  const auto* const level = std::ranges::find(kPluginLevels, word, NameOf);
  if (level == std::end(kPluginLevels)) {
    fields.FailAt("level", R"("level" must be "okay", "warning", "error" or "always", found )" +
                               JsonString(word));
  }
  if (!fields.Finish()) return fields.failure();
  log->SetPluginLevel(*level);
  if (PluginSession* const session = sessions->Current()) session->ApplyLogLevel();
  return LevelJson(*log);
}

}  // namespace

ControlGroup LogControls(HostLog* log, SessionManager* sessions) {
  return {
      {"GetLog", [log](const HostCall&) { return JsonResponse(WriteJson(log->Kept())); }},
      {"GetLogLevel", [log](const HostCall&) { return JsonResponse(WriteJson(LevelJson(*log))); }},
      {"SetLogLevel", [log, sessions](const HostCall& call) {
         return ControlResponse(SetLevel(log, sessions, call));
       }}};
}

}  // namespace Kest::Host
