// What a check found wrong.
#pragma once

#include <optional>
#include <string>
#include <utility>

namespace Kest::Host {

struct Finding {
  std::string check;
  std::string expected;
  std::string found;
};

// Keeps the first finding: those after it are often its consequences.
class Findings {
 public:
  void Add(std::string check, std::string expected, std::string found) {
    if (!first_) first_ = {std::move(check), std::move(expected), std::move(found)};
  }
  const std::optional<Finding>& First() const { return first_; }

 private:
  std::optional<Finding> first_;
};

}  // namespace Kest::Host
