// Collects the log lines of a scope.
//
//   LogCapture log;                     // level okay and up, every group; nothing on the console
//   ...
//   EXPECT_THAT(log.Lines(), ElementsAre(" ERROR|| Loot disabled."));
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/mutex.h"
#include "log/logger.h"

namespace Kest {

// Starts with a fresh logger without its console targets and leaves a fresh one. Lines are
// kept without their line feed. No other thread logs while it comes and goes.
class LogCapture : public LogTarget {
 public:
  explicit LogCapture(std::string_view lineTemplate = "#L|#G| #M") : LogTarget(lineTemplate) {
    Logger& logger = Logger::Instance();
    logger.ResetForTests();
    for (const char* name : {"StdErrLogTarget", "DebuggerConsoleLogTarget"}) {
      if (LogTarget* console = logger.FindTarget(name)) console->Detach();
    }
    logger.SetMinimumLevel(Level::kOkay);
    SetLevel(Level::kOkay);
    logger.Attach(*this);
  }
  ~LogCapture() override {
    Detach();
    Logger::Instance().ResetForTests();
  }

  const char* ClassName() const override { return "LogCapture"; }
  void Write(const LogRecord& record) override {
    WriteLine(record, [this](std::string_view line) {
      MutexLock hold(linesMutex_);
      lines_.emplace_back(line.substr(0, line.size() - 1));
    });
  }
  void Flush() override {}

  // The lines so far, oldest first.
  std::vector<std::string> Lines() const {
    MutexLock hold(linesMutex_);
    return lines_;
  }
  void Clear() {
    MutexLock hold(linesMutex_);
    lines_.clear();
  }

 private:
  mutable Mutex linesMutex_;
  std::vector<std::string> lines_ KEST_GUARDED_BY(linesMutex_);
};

}  // namespace Kest
