#include "log/fatal.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "base/platform.h"
#include "log/conversion.h"
#include "log/logger.h"

namespace Kest {
namespace {

constexpr size_t kReportCapacity = 4096;

bool IsGiven(const char* text) {
  return text != nullptr && *text != '\0';
}

void AppendEntry(std::string_view title, const char* text, std::string_view end, FixedBuffer& out) {
  out.Append(title);
  out.Append(std::string_view(text));
  out.Append(end);
}

// The system's error code goes to address zero, so that the crash report of the access violation
// carries it. Compilers turn a store to a known null into a trap without the value; they do not
// know what a volatile variable holds.
[[noreturn]] void End(uint32_t systemError) {
  volatile uint32_t* volatile nowhere = nullptr;
  *nowhere = systemError;
  std::abort();
}

}  // namespace

void AppendAssertionReport(const Assertion& assertion, FixedBuffer& out) {
  out.Append("Assertion failed!\n\n");
  if (IsGiven(assertion.file)) AppendEntry("File: ", assertion.file, "\n", out);
  if (assertion.line != 0) {
    out.Append("Line: ");
    RenderDefault(assertion.line, out);
    out.Append("\n\n");
  }
  if (IsGiven(assertion.function)) AppendEntry("Function: ", assertion.function, "\n\n", out);
  if (IsGiven(assertion.expression)) AppendEntry("Expression: ", assertion.expression, "", out);
  if (IsGiven(assertion.description)) {
    AppendEntry("\n\nDescription: ", assertion.description, "", out);
  }
}

void FailAssertion(const Assertion& assertion) noexcept {
  const uint32_t systemError = LastSystemError();
  char buffer[kReportCapacity];
  FixedBuffer report(buffer, sizeof(buffer) - 1);
  AppendAssertionReport(assertion, report);
  buffer[report.View().size()] = '\0';
  Log(Level::kError, kGroupDebug, "%s", buffer);
  Logger::Instance().Flush();
  End(systemError);
}

void Fatal(const char* code) noexcept {
  FailAssertion({.expression = code});
}

}  // namespace Kest
