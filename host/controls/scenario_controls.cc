#include "host/controls/scenario_controls.h"

#include <string>
#include <utility>

#include "host/controls/with_session.h"
#include "host/http/http_responses.h"
#include "host/world/file/shipped_worlds.h"
#include "host/world/input/yaml_writer.h"

namespace Kest::Host {
namespace {

HttpResponse Done(const Maybe<Nothing>& done, Json result) {
  return ControlResponse(done ? Maybe<Json>(std::move(result)) : Maybe<Json>(done.GetFailure()));
}

// A start that cannot be used is no fault of the request.
HttpResponse Reset(Scenarios* scenarios) {
  const auto done = scenarios->Reset();
  return done ? JsonResponse(R"({"reset":true})") : ProblemResponse(500, done.GetFailure().text);
}

HttpResponse Choose(Scenarios* scenarios, const HostCall& call) {
  const std::string& name = call.path.at("name");
  return Done(scenarios->Choose(name), Json{{"scenario", name}});
}

HttpResponse Export(SessionManager* sessions, const HostCall& call) {
  const std::string format(call.target.Parameter("format").value_or("yaml"));
  if (format != "yaml" && format != "json") {
    return ProblemResponse(400, "format must be yaml or json.");
  }
  return WithSession(sessions, [&format](PluginSession& session) {
    std::string text = session.GetWorld().File();
    if (format == "json") return JsonResponse(std::move(text));
    return HttpResponse{
        .status = 200, .contentType = "application/yaml", .body = WriteYaml(ParseJson(text))};
  });
}

HttpResponse Import(Scenarios* scenarios, const HostCall& call) {
  return Done(scenarios->Import({"body", call.request.body}), Json{{"imported", true}});
}

HttpResponse SaveSnapshot(Scenarios* scenarios, SessionManager* sessions, const HostCall& call) {
  const std::string& name = call.path.at("name");
  return WithSession(sessions, [&](PluginSession& session) {
    const std::string text = session.GetWorld().File();
    return Done(scenarios->GetSnapshots().Put(name, text),
                Json{{"name", name}, {"bytes", text.size()}});
  });
}

HttpResponse GetSnapshot(Scenarios* scenarios, const HostCall& call) {
  auto text = scenarios->GetSnapshots().Get(call.path.at("name"));
  if (!text) return ProblemResponse(text.GetFailure().status, text.GetFailure().text);
  return JsonResponse(std::move(text.GetValue()));
}

HttpResponse RemoveSnapshot(Scenarios* scenarios, const HostCall& call) {
  const std::string& name = call.path.at("name");
  return Done(scenarios->GetSnapshots().Remove(name), Json{{"name", name}});
}

HttpResponse Restore(Scenarios* scenarios, const HostCall& call) {
  const std::string& name = call.path.at("name");
  return Done(scenarios->Restore(name), Json{{"restored", name}});
}

}  // namespace

ControlGroup ScenarioControls(Scenarios* scenarios, SessionManager* sessions) {
  return {
      {"Reset", [=](const HostCall&) { return Reset(scenarios); }},
      {"ListScenarios",
       [=](const HostCall&) { return JsonResponse(WriteJson(scenarios->List())); }},
      {"ChooseScenario", [=](const HostCall& call) { return Choose(scenarios, call); }},
      {"ExportWorld", [=](const HostCall& call) { return Export(sessions, call); }},
      {"ImportWorld", [=](const HostCall& call) { return Import(scenarios, call); }},
      {"ListSnapshots",
       [=](const HostCall&) { return JsonResponse(WriteJson(scenarios->GetSnapshots().List())); }},
      {"GetSnapshot", [=](const HostCall& call) { return GetSnapshot(scenarios, call); }},
      {"SaveSnapshot",
       [=](const HostCall& call) { return SaveSnapshot(scenarios, sessions, call); }},
      {"RemoveSnapshot", [=](const HostCall& call) { return RemoveSnapshot(scenarios, call); }},
      {"RestoreSnapshot", [=](const HostCall& call) { return Restore(scenarios, call); }},
      {"GetWorldSchema", [](const HostCall&) { return JsonResponse(std::string(WorldSchema())); }},
  };
}

}  // namespace Kest::Host
