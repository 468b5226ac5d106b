#include "host/controls/timeline_controls.h"

#include <optional>
#include <string>
#include <utility>

#include "host/controls/event_controls.h"
#include "host/http/http_responses.h"
#include "host/json/json_text.h"

namespace Kest::Host {
namespace {

constexpr uint64_t kMostRows = 1000;

// Reads the parameters of a query; the first that is wrong is the failure.
class QueryReader {
 public:
  explicit QueryReader(const HostCall& call) : call_(call) {}

  std::optional<std::string> Text(std::string_view name) const {
    return call_.target.Parameter(name);
  }
  std::optional<uint64_t> Number(std::string_view name) {
    const auto text = Text(name);
    if (!text) return std::nullopt;
    const auto number = ParseNumber(*text);
    if (!number) Fail(name, "must be an integer", *text);
    return number;
  }
  size_t Limit() {
    const uint64_t limit = Number("limit").value_or(100);
    if (limit < 1 || limit > kMostRows) {
      Fail("limit", "must be an integer from 1 to " + std::to_string(kMostRows),
           std::to_string(limit));
    }
    return limit;
  }
  std::vector<RowKind> Kinds() {
    std::vector<RowKind> kinds;
    std::string names = Text("kind").value_or("");
    while (!names.empty()) {
      const size_t comma = names.find(',');
      const std::string name = names.substr(0, comma);
      names.erase(0, comma == std::string::npos ? comma : comma + 1);
      const auto kind = ReadRowKind(name);
      if (!kind) Fail("kind", "must be of " + RowKindNames(), name);
      if (kind) kinds.push_back(*kind);
    }
    return kinds;
  }
  std::optional<bool> Flag(std::string_view name) {
    const auto text = Text(name);
    if (!text) return std::nullopt;
    if (*text != "true" && *text != "false") Fail(name, "must be true or false", *text);
    return *text == "true";
  }
  const std::optional<Failure>& failure() const { return failure_; }

 private:
  void Fail(std::string_view name, const std::string& rule, const std::string& found) {
    if (failure_) return;
    failure_ = Failure{std::string(name) + " " + rule + ", found " + JsonString(found) + ".", 400};
  }

  const HostCall& call_;
  std::optional<Failure> failure_;
};

HttpResponse Rows(const Timeline& timeline, const HostCall& call) {
  QueryReader query(call);
  Timeline::Filter filter;
  filter.after = query.Number("after");
  filter.event = query.Number("event");
  filter.kinds = query.Kinds();
  filter.path = query.Text("path").value_or("");
  filter.limit = query.Limit();
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
  QueryReader query(call);
  const uint64_t after = query.Number("after").value_or(0);
  const auto refused = query.Flag("refused");
  const size_t limit = query.Limit();
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
