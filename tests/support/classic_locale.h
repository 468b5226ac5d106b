// For what the C library prints or reads as a reference, in any locale the tests run in.
#pragma once

#include <clocale>
#include <string>

namespace Kest::Testing {

// Numbers have a decimal point while it lives.
class ClassicLocale {
 public:
  ClassicLocale() : previous_(std::setlocale(LC_NUMERIC, nullptr)) {
    std::setlocale(LC_NUMERIC, "C");
  }
  ~ClassicLocale() { std::setlocale(LC_NUMERIC, previous_.c_str()); }
  ClassicLocale(const ClassicLocale&) = delete;
  ClassicLocale& operator=(const ClassicLocale&) = delete;

 private:
  const std::string previous_;
};

}  // namespace Kest::Testing
