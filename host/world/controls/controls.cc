#include "host/world/controls/controls.h"

#include <algorithm>

#include "host/openapi/control_description.h"
#include "host/world/controls/control_call.h"
#include "host/world/input/document.h"
#include "host/world/input/url_text.h"

namespace Kest::Host {
namespace {

struct ControlRow {
  std::string_view operationId;
  ControlFunction call;
};

constexpr ControlRow kControls[] = {
    {"GetWorld", ShowWorld},
    {"SignIn", SignIn},
    {"SignOut", SignOut},
    {"SetSummoner", SetSummoner},
    {"SetGameflow", SetGameflow},
    {"SetConfiguration", SetConfiguration},
    {"RemoveConfiguration", RemoveConfiguration},
    {"SetOwnership", SetOwnership},
    {"ChangeInventory", ChangeInventory},
    {"ChangeDefinition", ChangeDefinition},
    {"ChangeRecipe", ChangeRecipe},
    {"PushMessage", PushMessage},
    {"SetLoginPacket", SetLoginPacket},
    {"SetToken", SetToken},
    {"ResetToken", ResetToken},
    {"OverrideService", OverrideService},
    {"ResetService", ResetService},
};

bool Matches(std::string_view pathTemplate, const std::vector<std::string>& parts) {
  const std::vector<std::string> wanted = PathParts(pathTemplate.substr(kControlPrefix.size()));
  return std::equal(wanted.begin(), wanted.end(), parts.begin(), parts.end(),
                    [](const std::string& literal, const std::string& part) {
                      return literal.starts_with('{') || literal == part;
                    });
}

WorldResponse Refuse(const Failure& failure) {
  return WorldFailure(failure.status, failure.text);
}

// What carries out that operation; null when it is none of the world's.
ControlFunction FunctionOf(std::string_view operationId) {
  for (const ControlRow& row : kControls) {
    if (row.operationId == operationId) return row.call;
  }
  return nullptr;
}

// The control of that path and method; else why there is none.
Maybe<const ControlDescription*> FindControl(std::string_view method,
                                             const std::vector<std::string>& parts,
                                             std::string_view path) {
  std::string methods;
  for (const ControlDescription& control : AllControls()) {
    if (FunctionOf(control.operationId) == nullptr || !Matches(control.path, parts)) continue;
    if (method == control.method) return &control;
    methods += (methods.empty() ? "" : ", ") + control.method;
  }
  if (methods.empty()) return Failure{"there is no control " + std::string(path), 404};
  return Failure{"this control takes " + methods + ", not " + std::string(method), 405};
}

}  // namespace

WorldResponse CallControl(Platform& platform, std::string_view method, std::string_view path,
                          std::string_view body) {
  std::vector<std::string> parts = PathParts(UrlPath(path));
  if (parts.empty()) return Refuse({"there is no control of an empty name", 404});
  const auto found = FindControl(method, parts, path);
  if (!found) return Refuse(found.GetFailure());
  const ControlDescription& control = *found.GetValue();
  if (body.empty() && !control.TakesAnyBody()) body = "{}";
  auto document = Document::FromJson("body", body);
  if (!document) return Refuse(document.GetFailure());

  const ControlResult result =
      FunctionOf(control.operationId)(platform, {std::move(parts), std::move(document.GetValue())});
  if (!result) return Refuse(result.GetFailure());
  return WorldJson(WriteJson(result.GetValue()));
}

}  // namespace Kest::Host
