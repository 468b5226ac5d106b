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

struct FoundControl {
  const ControlDescription* control = nullptr;
  std::string methods;  // of all controls at the path, unless there is one of the wanted method
};

FoundControl FindControl(std::string_view method, const std::vector<std::string>& parts) {
  FoundControl found;
  for (const ControlDescription& control : AllControls()) {
    if (FunctionOf(control.operationId) == nullptr || !Matches(control.path, parts)) continue;
    if (method == control.method) return {&control, ""};
    found.methods += (found.methods.empty() ? "" : ", ") + control.method;
  }
  return found;
}

WorldResponse RefuseMethod(std::string_view method, const std::string& allowed) {
  WorldResponse refusal =
      Refuse({"this control takes " + allowed + ", not " + std::string(method), 405});
  refusal.allow = allowed;
  return refusal;
}

}  // namespace

WorldResponse CallControl(Platform& platform, std::string_view method, std::string_view path,
                          std::string_view body) {
  std::vector<std::string> parts = PathParts(UrlPath(path));
  if (parts.empty()) return Refuse({"there is no control of an empty name", 404});
  const FoundControl found = FindControl(method, parts);
  if (!found.methods.empty()) return RefuseMethod(method, found.methods);
  if (found.control == nullptr) return Refuse({"there is no control " + std::string(path), 404});
  const ControlDescription& control = *found.control;
  if (body.empty() && !control.TakesAnyBody()) body = "{}";
  auto document = Document::FromJson("body", body);
  if (!document) return Refuse(document.GetFailure());

  const ControlResult result =
      FunctionOf(control.operationId)(platform, {std::move(parts), std::move(document.GetValue())});
  if (!result) return Refuse(result.GetFailure());
  return WorldJson(WriteJson(result.GetValue()));
}

}  // namespace Kest::Host
