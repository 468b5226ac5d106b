// The targets every process starts with: standard error, standard output and the debugger.
#pragma once

#include <cstdio>
#include <string_view>

#include "log/log_target.h"

namespace Kest {

inline constexpr std::string_view kConsoleLineTemplate = "#E(#T): #L| #M";
inline constexpr std::string_view kPlainLineTemplate = "#M";

// Writes lines to a C stream that it borrows for life.
class BaseConsoleLogTarget : public LogTarget {
 public:
  BaseConsoleLogTarget(std::FILE* stream, std::string_view lineTemplate)
      : LogTarget(lineTemplate), stream_(stream) {}

  const char* ClassName() const override { return "BaseConsoleLogTarget"; }
  void Write(const LogRecord& record) override;
  void Flush() override;

 private:
  std::FILE* stream_;
};

class StdErrLogTarget : public BaseConsoleLogTarget {
 public:
  StdErrLogTarget() : BaseConsoleLogTarget(stderr, kConsoleLineTemplate) {}
  const char* ClassName() const override { return "StdErrLogTarget"; }
};

class StdOutLogTarget : public BaseConsoleLogTarget {
 public:
  StdOutLogTarget() : BaseConsoleLogTarget(stdout, kPlainLineTemplate) {}
  const char* ClassName() const override { return "StdOutLogTarget"; }
};

// Writes to an attached debugger; there is nothing to flush.
class DebuggerConsoleLogTarget : public LogTarget {
 public:
  DebuggerConsoleLogTarget() : LogTarget(kConsoleLineTemplate) {}
  const char* ClassName() const override { return "DebuggerConsoleLogTarget"; }
  void Write(const LogRecord& record) override;
  void Flush() override {}
};

}  // namespace Kest
