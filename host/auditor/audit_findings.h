// The newest findings of an audit.
//
// Threads: one at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>

#include "host/audit/finding.h"
#include "host/json/json.h"

namespace Kest::Host {

class AuditFindings {
 public:
  static constexpr size_t kMostHeld = 100;
  static constexpr size_t kMostBytes = 2000;  // of each text

  // `time` in milliseconds since 1970; `event` is that of the stream it is about, 0 for none. Long
  // texts are shortened. False: it has been found once more since the last StartOver.
  bool Add(Finding finding, int64_t time, uint64_t event);

  // What was found so far is not found once more, but again.
  void StartOver() { before_ = count_; }

  uint64_t Count() const { return count_; }  // also of those that are no longer held
  // Oldest first: [{"id", "time", "times", "check", "path", "expected", "found", "event"}].
  Json ToJson() const;
  // The newest in one line, for people. REQUIRES: there is one.
  std::string DescribeNewest() const;

 private:
  struct Held {
    Finding finding;
    int64_t time;
    uint64_t event;
    uint64_t times = 1;

    bool IsSame(const Held& other) const;
  };

  std::deque<Held> held_;  // the last has the id count_
  uint64_t count_ = 0;
  uint64_t before_ = 0;  // the last id before StartOver
};

}  // namespace Kest::Host
