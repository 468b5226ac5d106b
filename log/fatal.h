// Conditions that end the process: the report, its codes and the end.
#pragma once

#include "log/fixed_buffer.h"

namespace Kest {

// Codes of fatal checks; they are the expression of the report.
inline constexpr char kFatalUuid[] = "ALE-8B4DC795";       // the system gave no unique id
inline constexpr char kFatalPluginApi[] = "ALE-EECF0606";  // the host's plugin API does not fit
inline constexpr char kFatalAwait[] = "ALE-6D828C10";      // awaiting a result failed

// What failed and where. A null or empty text, or line 0, is left out of the report.
struct Assertion {
  const char* expression = nullptr;
  const char* description = nullptr;
  const char* file = nullptr;
  int line = 0;
  const char* function = nullptr;
};

// "Assertion failed!", then file, line, function, expression and description, one paragraph each.
void AppendAssertionReport(const Assertion& assertion, FixedBuffer& out);

// Logs the report at level error in group "DBG", flushes the targets and ends the process with an
// access violation that carries the thread's last system error, or else by abort.
[[noreturn]] void FailAssertion(const Assertion& assertion) noexcept;

// The same for a code alone: `if (!CreateUuid(&uuid)) Fatal(kFatalUuid);`
[[noreturn]] void Fatal(const char* code) noexcept;

}  // namespace Kest
