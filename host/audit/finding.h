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
  std::string path = {};  // of the resource it is about; empty: of none
};

// Takes what checks find.
class FindingSink {
 public:
  virtual ~FindingSink() = default;
  virtual void Take(Finding finding) = 0;

  void Add(std::string check, std::string expected, std::string found, std::string path = {}) {
    Take({std::move(check), std::move(expected), std::move(found), std::move(path)});
  }
};

// Keeps the first finding: those after it are often its consequences.
class Findings : public FindingSink {
 public:
  void Take(Finding finding) override {
    if (!first_) first_ = std::move(finding);
  }
  const std::optional<Finding>& First() const { return first_; }

 private:
  std::optional<Finding> first_;
};

}  // namespace Kest::Host
