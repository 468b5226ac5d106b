#include "host/timeline/timeline.h"

#include <algorithm>
#include <utility>

#include "host/cause/cause.h"
#include "host/timeline/curl_command.h"

namespace Kest::Host {
namespace {

constexpr size_t kNameBytes = 2048;
constexpr size_t kSummaryBytes = 300;
constexpr size_t kMostEffects = 100;
constexpr size_t kMostCauses = 100;

bool Passes(const TimelineRow& row, const Timeline::Filter& filter) {
  const auto& kinds = filter.kinds;
  return (kinds.empty() || std::find(kinds.begin(), kinds.end(), row.kind) != kinds.end()) &&
         row.name.starts_with(filter.path) && (!filter.event || row.event == *filter.event);
}

bool IsClients(RowKind kind) {
  return kind == RowKind::kRequest || kind == RowKind::kControl;
}

// As the stream of events reports it.
Json Gap(uint64_t from, uint64_t to, bool restarted) {
  return {{"from", std::min(from, to)}, {"to", to}, {"restarted", restarted}};
}

}  // namespace

uint64_t Timeline::Add(TimelineRow row) {
  if (!row.cause) row.cause = CurrentCause();
  const MutexLock lock(mutex_);
  if (*row.cause > last_) row.cause = 0;
  ShortenLocked(&row);
  row.time = clock_();
  if (const TimelineRow* cause = row.endsCause ? FindLocked(*row.cause) : nullptr) {
    row.duration = std::max<int64_t>(0, row.time - cause->time);
  }
  row.id = ++last_;
  bytes_ += row.Bytes();
  rows_.push_back(std::move(row));
  DropOldLocked();
  if (listener_) listener_(WriteJson(RowJson(rows_.back())));
  return last_;
}

void Timeline::ShortenLocked(TimelineRow* row) const {
  row->size = row->payload.size();
  // A token that is cut in two would not be found.
  if (row->payload.size() > limits_.payloadBytes) {
    row->isShortened = true;
    row->payload.resize(std::min(row->payload.size(), limits_.payloadBytes + mask_.LongestBytes()));
  }
  for (std::string* text : {&row->name, &row->summary, &row->payload}) mask_.Apply(text);
  if (row->isShortened) row->payload.resize(std::min(row->payload.size(), limits_.payloadBytes));
  row->payload.shrink_to_fit();
  row->name = Shorten(row->name, kNameBytes);
  row->summary = Shorten(row->summary, kSummaryBytes);
}

void Timeline::DropOldLocked() {
  while (rows_.size() > limits_.rows || (bytes_ > limits_.bytes && rows_.size() > 1)) {
    bytes_ -= rows_.front().Bytes();
    rows_.pop_front();
  }
}

void Timeline::End(uint64_t id) {
  const MutexLock lock(mutex_);
  if (FindLocked(id) == nullptr) return;
  TimelineRow& row = rows_[id - FirstLocked()];
  row.duration = std::max<int64_t>(0, clock_() - row.time);
}

void Timeline::Hide(std::string_view token) {
  const MutexLock lock(mutex_);
  mask_.Learn(token);
}

const TimelineRow* Timeline::FindLocked(uint64_t id) const {
  const uint64_t first = FirstLocked();
  return id < first || id > last_ ? nullptr : &rows_[id - first];
}

std::string Timeline::NameOf(uint64_t id) const {
  const MutexLock lock(mutex_);
  const TimelineRow* const row = FindLocked(id);
  return row == nullptr ? std::string() : row->name;
}

Json Timeline::Read(const Filter& filter) const {
  const MutexLock lock(mutex_);
  const uint64_t first = FirstLocked();
  Json page = {{"first", first}, {"last", last_}, {"next", last_}, {"gap", nullptr}};
  std::vector<const TimelineRow*> found;
  if (filter.after) {
    const bool restarted = *filter.after > last_;
    const uint64_t from = restarted ? 1 : *filter.after + 1;
    if (restarted || from < first) page["gap"] = Gap(from, first - 1, restarted);
    for (uint64_t id = std::max(from, first); id <= last_; ++id) {
      if (!Passes(rows_[id - first], filter)) continue;
      if (found.size() == filter.limit) break;
      found.push_back(&rows_[id - first]);
    }
    if (found.size() == filter.limit && !found.empty()) page["next"] = found.back()->id;
  } else {
    for (auto row = rows_.rbegin(); row != rows_.rend() && found.size() < filter.limit; ++row) {
      if (Passes(*row, filter)) found.insert(found.begin(), &*row);
    }
  }
  Json& rows = page["rows"] = Json::array();
  for (const TimelineRow* row : found) rows.push_back(RowJson(*row));
  return page;
}

std::optional<Json> Timeline::Detail(uint64_t id) const {
  const MutexLock lock(mutex_);
  const TimelineRow* const row = FindLocked(id);
  if (row == nullptr) return std::nullopt;
  Json detail = RowJson(*row);
  AddPayload(*row, &detail);
  if (IsClients(row->kind)) detail["curl"] = CurlCommand(*row);
  Json& causes = detail["causes"] = Json::array();
  const TimelineRow* cause = FindLocked(row->cause.value_or(0));
  for (; cause != nullptr && causes.size() < kMostCauses; cause = FindLocked(*cause->cause)) {
    causes.push_back(RowJson(*cause));
  }
  AddEffectsLocked(*row, &detail);
  return detail;
}

// A row comes after its cause: one pass finds all.
void Timeline::AddEffectsLocked(const TimelineRow& row, Json* detail) const {
  std::vector<uint64_t> found = {row.id};  // grows only at its end, in order
  Json effects = Json::array();
  const auto isEffect = [&found](const TimelineRow& later) {
    return std::binary_search(found.begin(), found.end(), later.cause.value_or(0));
  };
  auto later = rows_.begin() + static_cast<std::ptrdiff_t>(row.id + 1 - FirstLocked());
  while ((later = std::find_if(later, rows_.end(), isEffect)) != rows_.end()) {
    if (effects.size() == kMostEffects) break;
    found.push_back(later->id);
    effects.push_back(RowJson(*later));
    ++later;
  }
  (*detail)["effects"] = std::move(effects);
  (*detail)["hasMoreEffects"] = later != rows_.end();
}

uint64_t Timeline::NearestCause(uint64_t id, RowKind kind) const {
  const MutexLock lock(mutex_);
  const TimelineRow* row = FindLocked(id);
  while (row != nullptr && row->kind != kind) row = FindLocked(*row->cause);
  return row == nullptr ? 0 : row->id;
}

}  // namespace Kest::Host
