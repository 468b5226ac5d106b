#include "plugin/plugin_log_target.h"

#include "plugin/text_view.h"

namespace Kest {

void PluginLogTarget::Write(const LogRecord& record) {
  WriteLine(record, [this, &record](std::string_view line) {
    services_.log(&services_, static_cast<int32_t>(record.level), ToText(line));
  });
}

}  // namespace Kest
