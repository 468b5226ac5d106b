#include "host/controls/timeline_controls.h"

#include <optional>
#include <string>
#include <utility>

#include "host/controls/event_controls.h"
#include "host/controls/query_reader.h"
#include "host/http/http_responses.h"
#include "host/json/json_text.h"

namespace Kest::Host {
namespace {

constexpr uint64_t kMostRows = 1000;

size_t ReadLimit(QueryReader& query) {
  return query.Number("limit", 1, kMostRows).value_or(100);
}

std::vector<RowKind> ReadKinds(QueryReader& query) {
  std::vector<RowKind> kinds;
  std::string names = query.Text("kind").value_or("");
  while (!names.empty()) {
    const size_t comma = names.find(',');
    const std::string name = names.substr(0, comma);
    names.erase(0, comma == std::string::npos ? comma : comma + 1);
    const auto kind = ReadRowKind(name);
    if (!kind) query.Fail("kind", "must be of " + RowKindNames(), name);
    if (kind) kinds.push_back(*kind);
  }
  return kinds;
}

HttpResponse Rows(const Timeline& timeline, const HostCall& call) {
  QueryReader query(call.target);
  Timeline::Filter filter;
  filter.after = query.Number("after");
  filter.event = query.Number("event", 1);
  filter.kinds = ReadKinds(query);
  filter.path = query.Text("path").value_or("");
  filter.limit = ReadLimit(query);
  if (query.failure()) return ControlResponse(*query.failure());
  return ControlResponse(timeline.Read(filter));
}

HttpResponse Row(const Timeline& timeline, const HostCall& call) {
  const std::string& id = call.path.at("id");
  const auto number = ParseNumber(id);
  if (!number)
    return ProblemResponse(400, "The id of a row is an integer, found " + JsonString(id) + ".");
  if (auto detail = timeline.Detail(*number)) return ControlResponse(std::move(*detail));
  return ProblemResponse(404, "The timeline holds no row " + id + ".");
}

HttpResponse Entries(const Ledger& ledger, const HostCall& call) {
  QueryReader query(call.target);
  const uint64_t after = query.Number("after").value_or(0);
  const auto refused = query.Flag("refused");
  const size_t limit = ReadLimit(query);
  if (query.failure()) return ControlResponse(*query.failure());
  return ControlResponse(ledger.Entries(after, refused, limit));
}

}  // namespace

ControlGroup TimelineControls(const Traffic* traffic, const EventStream* stream) {
  return {
      {"GetTimeline", [traffic](const HostCall& call) { return Rows(traffic->Rows(), call); }},
      {"FollowTimeline", [stream](const HostCall& call) { return FollowStream(stream, call); }},
      {"GetTimelineRow", [traffic](const HostCall& call) { return Row(traffic->Rows(), call); }},
      {"GetLedger",
       [traffic](const HostCall& call) { return Entries(traffic->Transactions(), call); }},
  };
}

}  // namespace Kest::Host
