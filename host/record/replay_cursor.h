// The place in a recording that a replay has come to: what the plugin does is compared with what it
// did, crossing by crossing, up to the first difference.
//
// Not compared are the queries `now` and `cause`: the recording gives their results, and a plugin
// may ask more or less often than it did. Of a log line the stamp is left out, since it is of the
// time zone.
//
// Threads: no lock; one owner.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "host/record/crossing.h"
#include "host/record/recording_reader.h"

namespace Kest::Host {

class ReplayCursor {
 public:
  ReplayCursor(std::unique_ptr<RecordingReader> reader, bool comparesLog);

  // The next crossing; null once the comparison has ended: with the recording, by a difference or a
  // failure.
  const Crossing* Peek();
  // The crossing that Peek returned is equal.
  void Take();

  // The plugin calls the host on that task. Returns the recorded crossing when it is the same
  // call, otherwise nothing. A query gets a result in any case.
  struct Match {
    uint64_t number;
    Json result;
  };
  std::optional<Match> MatchCall(uint64_t task, std::string_view function, const Json& arguments);
  // The plugin returns from what the host called as that task.
  void MatchLeave(uint64_t task, std::string_view function, const Json& result);

  // The plugin does `found` instead of the next crossing.
  void Differ(std::string_view found);
  // The next crossing cannot be carried out.
  void Fail(std::string_view what);

  // What ended the comparison before the end of the recording.
  const std::string& Difference() const { return difference_; }
  const std::string& Problem() const { return problem_; }
  uint64_t Taken() const { return taken_; }

 private:
  bool IsOptional(std::string_view function) const;
  bool IsSame(const Json& arguments) const;
  // Passes over what a task need not do.
  void SkipOptional(uint64_t task);
  void DifferFrom(const Crossing& found);

  const std::unique_ptr<RecordingReader> reader_;
  const bool comparesLog_;
  bool hasNext_ = false;
  bool isOver_ = false;
  uint64_t taken_ = 0;
  std::string difference_;
  std::string problem_;
  std::map<std::string, Json, std::less<>> queried_;  // the last result of each query
};

}  // namespace Kest::Host
