#include "host/record/replay_cursor.h"

#include <algorithm>
#include <utility>

namespace Kest::Host {
namespace {

constexpr std::string_view kLog = "log";
constexpr std::string_view kQueries[] = {"now", "cause"};
constexpr size_t kMostOfLine = 400;  // bytes of a crossing that a report shows
constexpr size_t kAround = 40;       // bytes before and after the first other one

bool IsQuery(std::string_view function) {
  return std::find(std::begin(kQueries), std::end(kQueries), function) != std::end(kQueries);
}

// The log line from its level on.
Json WithoutStamp(const Json& arguments) {
  Json cut = arguments;
  const auto line = cut.find("line");
  if (line == cut.end() || !line->is_string()) return cut;
  std::string& text = line->get_ref<std::string&>();
  text.erase(0, std::min(text.find('|'), text.size()));
  return cut;
}

std::string Begin(const std::string& text) {
  if (text.size() <= kMostOfLine) return text;
  return text.substr(0, kMostOfLine).append("...");
}

std::string Around(const std::string& text, size_t place) {
  const size_t from = place - std::min(place, kAround);
  return text.substr(std::min(from, text.size()), 2 * kAround);
}

}  // namespace

ReplayCursor::ReplayCursor(std::unique_ptr<RecordingReader> reader, bool comparesLog)
    : reader_(std::move(reader)), comparesLog_(comparesLog) {}

const Crossing* ReplayCursor::Peek() {
  if (isOver_) return nullptr;
  if (!hasNext_) {
    const auto read = reader_->Next();
    if (!read) problem_ = read.GetFailure().text;
    hasNext_ = read && read.GetValue();
    isOver_ = !hasNext_;
  }
  return hasNext_ ? &reader_->Current() : nullptr;
}

void ReplayCursor::Take() {
  hasNext_ = false;
  ++taken_;
}

bool ReplayCursor::IsOptional(std::string_view function) const {
  return IsQuery(function) || (function == kLog && !comparesLog_);
}

bool ReplayCursor::IsSame(const Json& arguments) const {
  const Crossing& next = reader_->Current();
  if (IsOptional(next.function) || arguments == next.arguments) return true;
  return next.function == kLog && WithoutStamp(arguments) == WithoutStamp(next.arguments);
}

void ReplayCursor::SkipOptional(uint64_t task) {
  for (const Crossing* next = Peek(); next != nullptr; next = Peek()) {
    const bool isCall = next->kind == Crossing::Kind::kCall && next->task == task;
    if (!isCall || !IsOptional(next->function)) return;
    queried_[next->function] = next->result;
    Take();
  }
}

std::optional<ReplayCursor::Match> ReplayCursor::MatchCall(uint64_t task, std::string_view function,
                                                           const Json& arguments) {
  const bool isOptional = IsOptional(function);
  if (!isOptional) SkipOptional(task);
  const Crossing* const next = Peek();
  const bool isSameCall = next != nullptr && next->kind == Crossing::Kind::kCall &&
                          next->task == task && next->function == function;
  if (isSameCall && IsSame(arguments)) {
    if (isOptional) queried_[next->function] = next->result;
    Take();
    return Match{next->number, next->result};
  }
  if (isOptional) {
    const auto last = queried_.find(function);
    return Match{0, last == queried_.end() ? Json() : last->second};
  }
  if (next != nullptr) {
    DifferFrom({.number = next->number,
                .task = task,
                .thread = next->thread,
                .kind = Crossing::Kind::kCall,
                .function = std::string(function),
                .arguments = arguments,
                .result = isSameCall ? next->result : Json()});
  }
  return std::nullopt;
}

void ReplayCursor::MatchLeave(uint64_t task, std::string_view function, const Json& result) {
  SkipOptional(task);
  const Crossing* const next = Peek();
  if (next == nullptr) return;
  if (next->kind == Crossing::Kind::kLeave && next->task == task && next->function == function &&
      next->result == result) {
    return Take();
  }
  DifferFrom({.number = next->number,
              .task = task,
              .thread = next->thread,
              .kind = Crossing::Kind::kLeave,
              .function = std::string(function),
              .result = result});
}

void ReplayCursor::DifferFrom(const Crossing& found) {
  const std::string other = WriteJson(ToJson(found));
  Differ(Begin(other));
  const std::string expected = WriteJson(ToJson(reader_->Current()));
  const auto place = std::mismatch(expected.begin(), expected.end(), other.begin(), other.end());
  const auto at = static_cast<size_t>(place.first - expected.begin());
  difference_.append("From byte ").append(std::to_string(at + 1)).append(" on\n");
  difference_.append("  expected: ...").append(Around(expected, at)).append("...\n");
  difference_.append("  found:    ...").append(Around(other, at)).append("...\n");
}

void ReplayCursor::Differ(std::string_view found) {
  isOver_ = true;
  difference_ = reader_->Place() + ": here the plugin differs from the recording.\n";
  const auto& context = reader_->Context();
  for (size_t i = 0; i + 1 < context.size(); ++i) {
    difference_.append("  ").append(context[i]).append("\n");
  }
  difference_.append("Expected: ").append(Begin(WriteJson(ToJson(reader_->Current()))));
  difference_.append("\nFound:    ").append(found).append("\n");
}

void ReplayCursor::Fail(std::string_view what) {
  isOver_ = true;
  problem_ = reader_->Place().append(": not a line of a recording: ").append(what);
}

}  // namespace Kest::Host
