// The resource events the plugin published, kept for readers that follow them live or come back.
// The newest events are held up to a count and a number of bytes; a reader that asks for older ones
// gets a gap event that names the range it missed.
//
// Threads: any.
// Format:  server-sent events: "id: 7", "event: resource", "data: {uri, eventType, data}", and
//          "event: reset" with "data: {}".
// Growth:   what is noted of controls grows with the number of controls alone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "base/mutex.h"

namespace Kest::Host {

struct PublishedEvent {
  uint64_t id = 0;
  std::string data;  // {"uri":..,"eventType":..,"data":..}
};

class EventStream {
 public:
  struct Limits {
    size_t events = 8192;
    size_t bytes = size_t{32} * 1024 * 1024;
  };
  struct Range {
    uint64_t first = 1;  // oldest id that is held; last + 1 when none is
    uint64_t last = 0;   // newest id ever given
  };

  explicit EventStream(Limits limits) : limits_(limits) {}
  EventStream() : EventStream(Limits{}) {}

  // Adds an event and gives it the next id. `eventType` is "Create", "Update" or "Delete"; `json`
  // is the value as one JSON document, empty for none. Returns the id.
  uint64_t Append(std::string_view uri, std::string_view eventType, std::string_view json);
  // Adds the event "reset": the plugin and its world start again, and what was published before no
  // longer holds.
  void AppendReset();
  // Adds an event of that kind. `data` is JSON without line feeds.
  uint64_t AppendFrame(std::string_view event, std::string_view data);

  // The events after `*position` as stream text, about `atMost` bytes of them but at least one;
  // moves `*position` to the last one returned. Empty: there is nothing newer. A position this
  // stream never gave (from before a restart) gives a gap event and then all that is held.
  std::string Read(uint64_t* position, size_t atMost) const;

  // A control has changed something. Readers who ask for it learn of it while they read; it has no
  // id and is not held.
  void NoteControl(std::string_view operationId);
  // The event "control" with the operation ids noted since `*seen`, each once; moves `*seen`.
  // Empty: there is none.
  std::string ReadControls(uint64_t* seen) const;
  // How many were noted.
  uint64_t ControlCount() const;

  // The oldest event "resource" after `*position`, of `uri` unless that is empty; moves `*position`
  // to it, or to the newest event when there is none.
  // REQUIRES: `*position` is at least the one before the oldest that is held.
  std::optional<PublishedEvent> Find(uint64_t* position, std::string_view uri) const;

  Range Held() const;

  // `listener` is called after each Append and NoteControl, on its thread; it must not call the
  // stream. Set it before the first Append.
  void SetListener(std::function<void()> listener) { listener_ = std::move(listener); }

 private:
  const Limits limits_;
  std::function<void()> listener_;
  mutable Mutex mutex_;
  std::deque<std::string> frames_ KEST_GUARDED_BY(mutex_);  // the last has id last_
  size_t bytes_ KEST_GUARDED_BY(mutex_) = 0;
  uint64_t last_ KEST_GUARDED_BY(mutex_) = 0;
  // By operation id: the count when it was noted last.
  std::map<std::string, uint64_t, std::less<>> controls_ KEST_GUARDED_BY(mutex_);
  uint64_t controlCount_ KEST_GUARDED_BY(mutex_) = 0;
};

}  // namespace Kest::Host
