#include "host/timeline/row.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "base/utf8.h"
#include "host/json/base64.h"
#include "host/json/json_text.h"

namespace Kest::Host {
namespace {

// By RowKind.
constexpr std::array<std::string_view, 15> kKindNames = {"request",
                                                         "control",
                                                         "response",
                                                         "sibling-request",
                                                         "sibling-response",
                                                         "service-call",
                                                         "service-response",
                                                         "resource",
                                                         "message",
                                                         "task",
                                                         "event",
                                                         "log",
                                                         "fault",
                                                         "clock",
                                                         "session"};
static_assert(kKindNames.size() == static_cast<size_t>(RowKind::kSession) + 1);

constexpr int kMostLevels = 200;  // of JSON that is written: that recurses

bool IsJsonType(std::string_view type) {
  return type.starts_with("application/json") || type == "application/problem+json";
}

}  // namespace

std::string_view RowKindName(RowKind kind) {
  return kKindNames[static_cast<size_t>(kind)];
}

std::optional<RowKind> ReadRowKind(std::string_view name) {
  const auto* const found = std::find(kKindNames.begin(), kKindNames.end(), name);
  if (found == kKindNames.end()) return std::nullopt;
  return static_cast<RowKind>(found - kKindNames.begin());
}

std::string RowKindNames() {
  std::string names;
  for (const std::string_view name : kKindNames) {
    names.append(names.empty() ? "" : ", ").append(name);
  }
  return names;
}

size_t TimelineRow::Bytes() const {
  return sizeof(TimelineRow) + name.size() + method.size() + status.size() + summary.size() +
         payload.size() + payloadType.size() + host.size() + accept.size();
}

Json RowJson(const TimelineRow& row) {
  Json json = {{"id", row.id}, {"time", row.time}, {"kind", RowKindName(row.kind)}};
  if (!row.method.empty()) json["method"] = row.method;
  json["name"] = row.name;
  if (row.cause.value_or(0) != 0) json["cause"] = *row.cause;
  if (row.duration) json["duration"] = *row.duration;
  if (!row.status.empty()) json["status"] = row.status;
  if (row.event != 0) json["event"] = row.event;
  json["size"] = row.size;
  json["summary"] = row.summary;
  return json;
}

void AddPayload(const TimelineRow& row, Json* json) {
  (*json)["payloadType"] = row.payloadType;
  (*json)["isShortened"] = row.isShortened;
  const bool mayBeJson =
      !row.isShortened && IsJsonType(row.payloadType) && !IsDeeperThan(row.payload, kMostLevels);
  if (mayBeJson && IsJson(row.payload)) {
    (*json)["payload"] = ParseJson(row.payload);
  } else if (row.isShortened || IsValidUtf8(row.payload)) {
    (*json)["payload"] = row.payload;  // a character that was cut is repaired where it is written
  } else {
    (*json)["encoding"] = "base64";
    (*json)["payload"] = EncodeBase64(row.payload);
  }
}

std::string Shorten(std::string_view text, size_t bytes) {
  constexpr std::string_view kRest = "...";
  std::string line(text.substr(0, bytes));
  if (text.size() > bytes) line.replace(bytes - kRest.size(), kRest.size(), kRest);
  std::replace(line.begin(), line.end(), '\n', ' ');
  return RepairUtf8(line);
}

}  // namespace Kest::Host
