#include "bench/comparison.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace Kest::Bench {
namespace {

constexpr double kShortestRound = 5e6;  // nanoseconds
constexpr size_t kRounds = 21;          // four quarters and the median between them
constexpr size_t kRoundsOfTimes = 5;    // where the caller repeats the program

// Sorted when it is made.
struct Quartiles {
  explicit Quartiles(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    lower = values[values.size() / 4];
    median = values[values.size() / 2];
    upper = values[values.size() - 1 - values.size() / 4];
  }
  double lower;
  double median;
  double upper;
};

std::string Fixed(double value, int decimals) {
  std::array<char, 48> text;
  std::snprintf(text.data(), text.size(), "%.*f", decimals, value);
  return text.data();
}

// Three digits, or all of those before the point.
std::string Number(double value) {
  if (value == std::floor(value) || value >= 100) return Fixed(value, 0);
  return Fixed(value, value >= 10 ? 1 : 2);
}

std::string Duration(double nanoseconds) {
  if (nanoseconds < 1e3) return Number(nanoseconds) + " ns";
  if (nanoseconds < 1e6) return Number(nanoseconds / 1e3) + " us";
  return Number(nanoseconds / 1e6) + " ms";
}

std::string Text(const Quartiles& ratio) {
  return Fixed(ratio.median, 2) + " (" + Fixed(ratio.lower, 2) + "-" + Fixed(ratio.upper, 2) + ")";
}

std::string Text(const Goal& goal) {
  if (goal.kind == Goal::Kind::kNone) return "";
  return (goal.kind == Goal::Kind::kAtLeast ? "at least " : "at most ") + Number(goal.ratio);
}

std::optional<bool> IsMet(const Goal& goal, const Quartiles& ratio) {
  if (goal.kind == Goal::Kind::kNone) return std::nullopt;
  return goal.kind == Goal::Kind::kAtLeast ? ratio.lower >= goal.ratio : ratio.upper <= goal.ratio;
}

}  // namespace

double CpuNanoseconds() {
#if defined(_WIN32)
  constexpr clockid_t kClock = CLOCK_MONOTONIC;  // processor time comes in steps of 10 ms and more
#else
  constexpr clockid_t kClock = CLOCK_PROCESS_CPUTIME_ID;
#endif
  timespec time;
  clock_gettime(kClock, &time);
  return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

void Require(bool holds, const char* message) {
  if (holds) return;
  std::fprintf(stderr, "%s\n", message);
  std::exit(1);
}

void Side::Calibrate() {
  for (count_ = 1; round_(count_) < kShortestRound; count_ *= 2) {
  }
}

void Table::Compare(const std::string& what, Side ours, const std::string& peerName, Side peer,
                    Goal goal) {
  if (timesOnly_) return OnlyTime(what, ours);
  ours.Calibrate();
  peer.Calibrate();
  std::vector<double> ourTimes, peerTimes, ratios;
  for (size_t round = 0; round < kRounds; ++round) {
    // Who goes first changes: the second finds the caches as the first left them.
    const bool isOursFirst = round % 2 == 0;
    if (isOursFirst) ourTimes.push_back(ours.Round());
    peerTimes.push_back(peer.Round());
    if (!isOursFirst) ourTimes.push_back(ours.Round());
    const double ratio = peerTimes.back() / ourTimes.back();
    ratios.push_back(goal.kind == Goal::Kind::kAtMost ? 1 / ratio : ratio);
  }
  const Quartiles ratio(std::move(ratios));
  Row(what, Duration(Quartiles(std::move(ourTimes)).median),
      peerName + ", " + Duration(Quartiles(std::move(peerTimes)).median), Text(ratio), Text(goal),
      IsMet(goal, ratio));
}

void Table::Time(const std::string& what, Side ours, double maximum) {
  if (timesOnly_) return OnlyTime(what, ours);
  ours.Calibrate();
  std::vector<double> times;
  for (size_t round = 0; round < kRounds; ++round) times.push_back(ours.Round());
  const Quartiles time(std::move(times));
  const Quartiles ratio({time.lower / maximum, time.median / maximum, time.upper / maximum});
  Row(what, Duration(time.median), "limit, " + Duration(maximum), Text(ratio), Text(AtMost(1)),
      IsMet(AtMost(1), ratio));
}

void Table::Value(const std::string& what, double value, const std::string& unit, double maximum) {
  if (timesOnly_) return;
  Row(what, Number(value) + unit, "limit", "", "at most " + Number(maximum) + unit,
      value <= maximum);
}

void Table::OnlyTime(const std::string& what, Side& ours) {
  ours.Calibrate();
  std::vector<double> times;
  for (size_t round = 0; round < kRoundsOfTimes; ++round) times.push_back(ours.Round());
  std::printf("%s\t%.1f\n", what.c_str(), Quartiles(std::move(times)).median);
  std::fflush(stdout);
}

void Table::Row(const std::string& what, const std::string& ours, const std::string& peer,
                const std::string& ratio, const std::string& goal, std::optional<bool> isMet) {
  const char* const verdict = !isMet ? "" : *isMet ? "yes" : "**MISSED**";
  std::printf("| %s | %s | %s | %s | %s | %s |\n", what.c_str(), ours.c_str(), peer.c_str(),
              ratio.c_str(), goal.c_str(), verdict);
  std::fflush(stdout);
}

}  // namespace Kest::Bench
