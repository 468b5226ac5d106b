// main() of the test programs. What a test logs is kept and shown only when the test fails; with
// KEST_TEST_LOG in the environment it goes to the console at once.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <locale>
#include <optional>
#include <string>
#include <string_view>

#include "log/logger.h"

namespace Kest::Testing {
namespace {

// Stands in for the console's targets while a test runs.
class LinesOfTheTest : public LogTarget {
 public:
  LinesOfTheTest() : LogTarget(kConsoleLineTemplate) {
    for (const char* name : {"StdErrLogTarget", "DebuggerConsoleLogTarget"}) {
      if (LogTarget* console = Logger::Instance().FindTarget(name)) console->Detach();
    }
    Logger::Instance().Attach(*this);
  }
  ~LinesOfTheTest() override { Detach(); }

  const char* ClassName() const override { return "LinesOfTheTest"; }
  void Write(const LogRecord& record) override {
    WriteLine(record, [this](std::string_view line) {
      lines_ += line;
      // A death test reads what its child prints.
      if (::testing::internal::InDeathTestChild()) std::fputs(line.data(), stderr);
    });
  }
  void Flush() override {}
  const std::string& Lines() const { return lines_; }

 private:
  std::string lines_;
};

class LogKeeper : public ::testing::EmptyTestEventListener {
  // The last suite named is the one in which a program ended or hung that prints failures only.
  void OnTestSuiteStart(const ::testing::TestSuite& suite) override {
    if (!GTEST_FLAG_GET(brief)) return;
    std::printf("%s\n", suite.name());
    std::fflush(stdout);
  }
  void OnTestStart(const ::testing::TestInfo& /*test*/) override { lines_.emplace(); }
  void OnTestEnd(const ::testing::TestInfo& test) override {
    if (test.result()->Failed()) std::fputs(lines_->Lines().c_str(), stderr);
    lines_.reset();
    Logger::Instance().ResetForTests();
  }

  std::optional<LinesOfTheTest> lines_;
};

// A host may have set a locale of its own. KEST_TEST_LOCALE names one with a decimal comma, in
// which numbers must be read and written as in any other.
bool SetLocaleOfHost() {
  const char* name = std::getenv("KEST_TEST_LOCALE");
  if (name == nullptr) return true;
  char half[8] = "";
  if (std::setlocale(LC_ALL, name) != nullptr) std::snprintf(half, sizeof half, "%.1f", 0.5);
  if (std::strcmp(half, "0,5") != 0) {
    std::fprintf(stderr, "The locale %s is missing or has no decimal comma.\n", name);
    return false;
  }
#if !defined(_WIN32)  // there the C++ library knows the classic one only
  std::locale::global(std::locale(name));
#endif
  return true;
}

}  // namespace
}  // namespace Kest::Testing

int main(int argc, char** argv) {
  ::testing::InitGoogleMock(&argc, argv);
  if (!Kest::Testing::SetLocaleOfHost()) return EXIT_FAILURE;
  if (std::getenv("KEST_TEST_LOG") == nullptr) {
    ::testing::UnitTest::GetInstance()->listeners().Append(new Kest::Testing::LogKeeper);
  }
  return RUN_ALL_TESTS();
}
