#include "log/console_targets.h"

#include "base/platform.h"

namespace Kest {

// A console that is gone or full loses the line: there is no other place to report it.
void BaseConsoleLogTarget::Write(const LogRecord& record) {
  WriteLine(record,
            [this](std::string_view line) { std::fwrite(line.data(), 1, line.size(), stream_); });
}

void BaseConsoleLogTarget::Flush() {
  std::fflush(stream_);
}

void DebuggerConsoleLogTarget::Write(const LogRecord& record) {
  WriteLine(record, [](std::string_view line) { WriteToDebugger(line.data()); });
}

}  // namespace Kest
