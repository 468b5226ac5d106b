#include "host/auditor/audit_findings.h"

#include <algorithm>
#include <utility>

namespace Kest::Host {
namespace {

void Shorten(std::string* text) {
  if (text->size() <= AuditFindings::kMostBytes) return;
  text->resize(AuditFindings::kMostBytes);
  text->append("...");
}

}  // namespace

bool AuditFindings::Held::IsSame(const Held& other) const {
  return event == other.event && finding.check == other.finding.check &&
         finding.path == other.finding.path && finding.found == other.finding.found;
}

bool AuditFindings::Add(Finding finding, int64_t time, uint64_t event) {
  for (std::string* const text :
       {&finding.check, &finding.expected, &finding.found, &finding.path}) {
    Shorten(text);
  }
  Held next{std::move(finding), time, event};
  const auto since = std::min<uint64_t>(count_ - before_, held_.size());
  const auto known = std::find_if(held_.end() - static_cast<std::ptrdiff_t>(since), held_.end(),
                                  [&next](const Held& other) { return other.IsSame(next); });
  if (known != held_.end()) {
    ++known->times;
    return false;
  }
  held_.push_back(std::move(next));
  ++count_;
  if (held_.size() > kMostHeld) held_.pop_front();
  return true;
}

Json AuditFindings::ToJson() const {
  Json list = Json::array();
  uint64_t id = count_ - held_.size();
  for (const Held& held : held_) {
    list.push_back({{"id", ++id},
                    {"time", held.time},
                    {"times", held.times},
                    {"check", held.finding.check},
                    {"path", held.finding.path},
                    {"expected", held.finding.expected},
                    {"found", held.finding.found},
                    {"event", held.event != 0 ? Json(held.event) : Json()}});
  }
  return list;
}

std::string AuditFindings::DescribeNewest() const {
  const Held& newest = held_.back();
  std::string text = newest.finding.check;
  text.append(": ").append(newest.finding.path);
  if (newest.event != 0) text.append(", event ").append(std::to_string(newest.event));
  text.append(": expected ").append(newest.finding.expected);
  return text.append(", found ").append(newest.finding.found);
}

}  // namespace Kest::Host
