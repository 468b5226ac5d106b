#include "host/world/controls/controls.h"

#include "host/world/controls/control_call.h"
#include "host/world/json/json_reader.h"
#include "host/world/json/url_text.h"

namespace Kest::Host {
namespace {

struct ControlRow {
  std::string_view method;
  std::string_view name;  // first part of the path
  size_t partCount;
  ControlFunction answer;
  bool needsBody = false;
};

constexpr ControlRow kControls[] = {
    {"GET", "world", 1, ShowWorld},
    {"POST", "login", 1, SignIn},
    {"POST", "logout", 1, SignOut},
    {"PUT", "summoner", 1, SetSummoner},
    {"PUT", "gameflow", 1, SetGameflow},
    {"PUT", "configuration", 2, SetConfiguration, true},
    {"DELETE", "configuration", 2, RemoveConfiguration},
    {"PUT", "collections", 3, SetOwnership},
    {"POST", "inventory", 1, ChangeInventory},
    {"POST", "messages", 1, PushMessage},
    {"POST", "login-packet", 1, SetLoginPacket},
    {"PUT", "token", 1, SetToken},
    {"DELETE", "token", 1, ResetToken},
    {"PUT", "service", 2, OverrideService},
    {"DELETE", "service", 2, ResetService},
};

WorldResponse Refuse(const Failure& failure) {
  return {failure.status, "", "", failure.text};
}

// The row of that path and method; else why there is none.
Maybe<const ControlRow*> FindRow(std::string_view method, const std::vector<std::string>& parts,
                                 std::string_view path) {
  std::string methods;
  for (const ControlRow& row : kControls) {
    if (parts.size() != row.partCount || parts.front() != row.name) continue;
    if (method == row.method) return &row;
    methods += (methods.empty() ? "" : ", ") + std::string(row.method);
  }
  if (methods.empty()) return Failure{"there is no control " + std::string(path), 404};
  return Failure{"this control takes " + methods + ", not " + std::string(method), 405};
}

Maybe<JsonValue> ReadBody(const ControlRow& row, std::string_view body) {
  if (body.empty() && !row.needsBody) return JsonValue(JsonValue::Object());
  auto json = ReadJson(body);
  if (!json) return Failure{DescribeIssue("body", json.GetFailure()), 400};
  return std::move(json.GetValue());
}

}  // namespace

Failure BadBody(const IssueReport& report) {
  return Failure{DescribeIssue("body", report.issue()), 400};
}

WorldResponse AnswerControl(Platform& platform, std::string_view method, std::string_view path,
                            std::string_view body) {
  ControlCall call;
  call.parts = PathParts(UrlPath(path));
  if (call.parts.empty()) return Refuse({"there is no control of an empty name", 404});
  const auto row = FindRow(method, call.parts, path);
  if (!row) return Refuse(row.GetFailure());
  auto json = ReadBody(*row.GetValue(), body);
  if (!json) return Refuse(json.GetFailure());
  call.body = std::move(json.GetValue());

  const ControlResult result = row.GetValue()->answer(platform, call);
  if (!result) return Refuse(result.GetFailure());
  return {200, "application/json", WriteJson(result.GetValue()), ""};
}

}  // namespace Kest::Host
