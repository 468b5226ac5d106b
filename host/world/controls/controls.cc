#include "host/world/controls/controls.h"

#include <utility>

#include "host/openapi/control_lookup.h"
#include "host/world/controls/control_call.h"
#include "host/world/input/document.h"

namespace Kest::Host {
namespace {

struct ControlRow {
  std::string_view operationId;
  ControlFunction call;
};

constexpr ControlRow kControls[] = {
    {"GetWorld", ShowWorld},
    {"GetState", ShowState},
    {"WithholdCollections", WithholdCollections},
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
    {"GetFaults", ShowFaults},
    {"SetFaults", SetFaults},
    {"AddFault", AddFault},
    {"RemoveFault", RemoveFault},
    {"RemoveFaults", RemoveFaults},
    {"GetHeldCalls", ShowHeld},
    {"EndHeldCall", EndHeld},
    {"OverrideService", OverrideService},
    {"ResetService", ResetService},
    {"GetNextResults", ShowNextResults},
    {"PrepareNextResult", PrepareNextResult},
    {"ForgetNextResults", ForgetNextResults},
    {"GetOdds", ShowOdds},
};

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

WorldResponse RefuseMethod(std::string_view method, const std::string& allowed) {
  WorldResponse refusal =
      Refuse({"this control takes " + allowed + ", not " + std::string(method), 405});
  refusal.allow = allowed;
  return refusal;
}

}  // namespace

WorldResponse CallControl(Platform& platform, std::string_view method, std::string_view path,
                          std::string_view body) {
  const RequestTarget target = RequestTarget::Split(path);
  FoundControl found =
      FindControl(method, PathParts(target.path),
                  [](std::string_view operationId) { return FunctionOf(operationId) != nullptr; });
  if (!found.methods.empty()) return RefuseMethod(method, found.methods);
  if (found.control == nullptr) return Refuse({"there is no control " + std::string(path), 404});
  const ControlDescription& control = *found.control;
  if (body.empty() && !control.TakesAnyBody()) body = "{}";
  auto document = Document::FromJson("body", body);
  if (!document) return Refuse(document.GetFailure());

  const ControlResult result = FunctionOf(control.operationId)(
      platform, {std::move(found.arguments), std::move(document.GetValue()), target});
  if (!result) return Refuse(result.GetFailure());
  return WorldJson(WriteJson(result.GetValue()));
}

}  // namespace Kest::Host
