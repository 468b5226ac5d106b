// The table of what a benchmark program measures: each row beside a peer or a limit.
//
// Both sides of a comparison run turn by turn in rounds of at least 5 ms of processor time; each
// round gives one ratio, and the row shows their median and quartiles. A goal counts as met only
// where the worse quartile meets it, so neither luck nor a machine that slows down in between
// decides.
//
//   void Kest::Bench::AddRows(Table& table) {
//     table.Compare("text to tree", [&] { Keep(ReadJson(...)); },
//                   "RapidJSON", [&] { Keep(ParseByHand(...)); }, AtLeast(2.0));
//     table.Value("text to tree: allocations", Allocations(read), "", 25);
//   }
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace Kest::Bench {

// Processor time of the process so far, in nanoseconds; in the Windows build elapsed time.
double CpuNanoseconds();

// Makes the compiler believe that `value` is used and that all memory may have changed.
template <typename T>
void Keep(const T& value) {
  asm volatile("" : : "r,m"(value) : "memory");
}

// Ends the program with `message` unless `holds`: a side that does the wrong thing has no time.
void Require(bool holds, const char* message);

// One side of a row: what an iteration does and how it is timed.
class Side {
 public:
  // An iteration calls `run()`; a round times many of them together.
  template <typename Run>
  requires std::is_invocable_v<Run&> Side(Run run)
      : round_([run = std::move(run)](int64_t count) mutable {
          const double start = CpuNanoseconds();
          for (int64_t i = 0; i < count; ++i) run();
          return CpuNanoseconds() - start;
        }) {}

  // Calls `prepare()` before each `run()` and times only the latter.
  template <typename Prepare, typename Run>
  static Side Prepared(Prepare prepare, Run run) {
    return Measured([prepare = std::move(prepare), run = std::move(run)]() mutable {
      prepare();
      const double start = CpuNanoseconds();
      run();
      return CpuNanoseconds() - start;
    });
  }

  // Each `run()` returns the nanoseconds of its own that count.
  template <typename Run>
  static Side Measured(Run run) {
    Side side;
    side.round_ = [run = std::move(run)](int64_t count) mutable {
      double sum = 0;
      for (int64_t i = 0; i < count; ++i) sum += run();
      return sum;
    };
    return side;
  }

  // Finds out how many iterations make a round; the side is warm afterwards.
  void Calibrate();
  // Nanoseconds of an iteration, from one round.
  double Round() const { return round_(count_) / static_cast<double>(count_); }

 private:
  Side() = default;

  std::function<double(int64_t count)> round_;
  int64_t count_ = 1;
};

// How often as fast as the peer a row must be at least, or how many times the peer's time it may
// take at most; neither for a row that only informs.
struct Goal {
  enum class Kind { kNone, kAtLeast, kAtMost };
  Kind kind = Kind::kNone;
  double ratio = 0;
};
inline Goal AtLeast(double ratio) {
  return {Goal::Kind::kAtLeast, ratio};
}
inline Goal AtMost(double ratio) {
  return {Goal::Kind::kAtMost, ratio};
}
inline Goal NoGoal() {
  return {};
}

// Writes each row to the standard output when it has been measured.
class Table {
 public:
  // `timesOnly`: instead of Markdown rows, "what<TAB>nanoseconds" for our side of each timed row.
  explicit Table(bool timesOnly) : timesOnly_(timesOnly) {}

  void Compare(const std::string& what, Side ours, const std::string& peerName, Side peer,
               Goal goal);
  // Beside a limit, in nanoseconds.
  void Time(const std::string& what, Side ours, double maximum);
  // Something counted or weighed, beside a limit.
  void Value(const std::string& what, double value, const std::string& unit, double maximum);

 private:
  void Row(const std::string& what, const std::string& ours, const std::string& peer,
           const std::string& ratio, const std::string& goal, std::optional<bool> isMet);
  void OnlyTime(const std::string& what, Side& ours);

  bool timesOnly_;
};

// Each program defines it: measures its subject and adds the rows.
void AddRows(Table& table);

}  // namespace Kest::Bench
