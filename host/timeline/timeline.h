// What happened in the host, in order, each row with the row that led to it: request, service call,
// its response, task, published event. The newest rows are held, up to a count and a number of
// bytes; a reader that asks for older ones learns which it missed.
//
// Threads: any. Ids begin at 1 and grow by 1, also across a reset.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/mutex.h"
#include "host/timeline/row.h"
#include "host/timeline/token_mask.h"

namespace Kest::Host {

class Timeline {
 public:
  struct Limits {
    size_t rows = 8192;
    size_t bytes = size_t{32} * 1024 * 1024;
    size_t payloadBytes = size_t{256} * 1024;  // of one row
  };
  // Milliseconds since 1970. Any thread.
  using Clock = std::function<int64_t()>;
  // Gets each new row as JSON without line feeds, in the order of the ids, and must not call the
  // timeline.
  using Listener = std::function<void(const std::string& row)>;

  struct Filter {
    std::optional<uint64_t> after = {};  // without one: the newest
    std::vector<RowKind> kinds = {};     // none: all
    std::string path = {};               // what the name begins with
    std::optional<uint64_t> event = {};  // the row of this event of the stream
    size_t limit = 100;
  };

  explicit Timeline(Clock clock, Limits limits) : clock_(std::move(clock)), limits_(limits) {}
  explicit Timeline(Clock clock) : Timeline(std::move(clock), Limits{}) {}

  // Set it before the first row.
  void SetListener(Listener listener) { listener_ = std::move(listener); }

  // Returns the row's id.
  uint64_t Add(TimelineRow row);
  // What the row began has ended.
  void End(uint64_t id);
  // Hides the token in all rows that come.
  void Hide(std::string_view token);

  int64_t Now() const { return clock_(); }
  // The row's name, empty when it is not held.
  std::string NameOf(uint64_t id) const;

  // {"first", "last", "next", "gap", "rows"}: the rows that pass, oldest first. `next` is the id to
  // go on after; `gap` what of the range asked for is lost, or null.
  Json Read(const Filter& filter) const;
  // The row with its payload, its `causes` up to the first and its `effects`: what it led to,
  // what that led to and so on, in order. Nothing: it is not held.
  std::optional<Json> Detail(uint64_t id) const;
  // The nearest row of that kind among the causes of a row, itself included; 0: none is held.
  uint64_t NearestCause(uint64_t id, RowKind kind) const;

 private:
  const TimelineRow* FindLocked(uint64_t id) const KEST_REQUIRES(mutex_);
  uint64_t FirstLocked() const KEST_REQUIRES(mutex_) { return last_ - rows_.size() + 1; }
  void AddEffectsLocked(const TimelineRow& row, Json* detail) const KEST_REQUIRES(mutex_);
  void ShortenLocked(TimelineRow* row) const KEST_REQUIRES(mutex_);
  void DropOldLocked() KEST_REQUIRES(mutex_);

  const Clock clock_;
  const Limits limits_;
  Listener listener_;
  mutable Mutex mutex_;
  TokenMask mask_ KEST_GUARDED_BY(mutex_);
  std::deque<TimelineRow> rows_ KEST_GUARDED_BY(mutex_);  // the last has id last_
  size_t bytes_ KEST_GUARDED_BY(mutex_) = 0;
  uint64_t last_ KEST_GUARDED_BY(mutex_) = 0;
};

}  // namespace Kest::Host
