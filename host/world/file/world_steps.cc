// The steps of a world, and which of them cannot work.
#include <algorithm>
#include <array>
#include <string>

#include "host/json/json_text.h"
#include "host/openapi/control_request.h"
#include "host/openapi/schema_fault.h"
#include "host/world/file/world_sections.h"

namespace Kest::Host {
namespace {

constexpr std::array<std::string_view, 4> kStepMethods = {"POST", "PUT", "DELETE", "GET"};
constexpr int64_t kLongestStepDelay = 3'600'000;
// A step that began another session would begin the steps again.
constexpr std::array<std::string_view, 3> kBeginSessions = {"Reset", "ChooseScenario",
                                                            "RestoreSnapshot"};

template <typename List>
bool Has(const List& list, std::string_view word) {
  return std::find(list.begin(), list.end(), word) != list.end();
}

void CheckBody(FieldReader& fields, const ControlDescription& control, const std::string& text) {
  if (control.TakesText()) return;
  if (const auto fault = BodyFault(control, text)) return fields.FailAt("body", *fault);
  if (control.body.is_null()) return;
  const Json* const body = fields.Find("body");
  if (body == nullptr && control.TakesAnyBody()) return fields.Fail("member \"body\" is missing");
  static const Json kNothing = Json::object();
  const auto fault = FindSchemaFault(body == nullptr ? kNothing : *body, control.body);
  if (!fault) return;
  if (body == nullptr) return fields.Fail("body: " + fault->message);
  fields.FailPart(*fault->part, fault->message);
}

// By the table of controls; what depends on the world is found when the step is taken.
void CheckStep(FieldReader& fields, const ScenarioStep& step) {
  const RequestTarget target = RequestTarget::Split(step.path);
  std::string_view path = target.path;
  path.remove_prefix(kControlPrefix.size());
  const FoundControl found =
      FindControl(step.method, PathParts(path), [](std::string_view) { return true; });
  if (found.control == nullptr) {
    std::string fault = "there is no control ";
    fault.append(step.method).append(" ").append(target.path);
    if (!found.methods.empty()) fault.append("; this one takes ").append(found.methods);
    return fields.FailAt("request", fault);
  }
  if (Has(kBeginSessions, found.control->operationId)) {
    return fields.FailAt("request", "a step begins no other session");
  }
  if (const auto fault = QueryFault(found, target)) return fields.FailAt("request", *fault);
  CheckBody(fields, *found.control, step.body);
}

ScenarioStep ReadStep(FieldReader& fields) {
  ScenarioStep step;
  const std::string request = fields.String("request");
  const size_t space = std::min(request.find(' '), request.size());
  step.method = request.substr(0, space);
  step.path = request.substr(std::min(space + 1, request.size()));
  step.afterMilliseconds = fields.IntegerOr("afterMilliseconds", 0, 0, kLongestStepDelay);
  if (const Json* body = fields.Find("body")) step.body = WriteJson(*body);
  step.place = fields.Place();
  if (Has(kStepMethods, step.method) && step.path.starts_with("/_host/")) {
    CheckStep(fields, step);
  } else {
    fields.FailAt("request",
                  "a step is a method and the path of a control, such as "
                  "\"PUT /_host/gameflow\"; found \"" +
                      request + "\"");
  }
  return step;
}

}  // namespace

void ReadSteps(FieldReader& world, WorldData& data) {
  world.ForEach("steps", [&](FieldReader& fields) { data.steps.push_back(ReadStep(fields)); });
}

}  // namespace Kest::Host
