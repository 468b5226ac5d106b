#include "host/controls/description_controls.h"

#include <string>
#include <utility>

#include "host/controls/with_session.h"
#include "host/http/http_responses.h"
#include "host/json/json_text.h"
#include "host/openapi/openapi_document.h"
#include "plugin/text_view.h"

namespace Kest::Host {
namespace {

constexpr std::string_view kHelp = "$builtin.Help";
constexpr std::string_view kFormat = "format";
constexpr std::string_view kFullFormat = "Full";

HttpResponse AskHelp(PluginSession& session, std::string_view format) {
  const KestValue argument = {ToText(kFormat), {}, ToBytes(format)};
  return session.Invoke(kHelp, {&argument, 1});
}

HttpResponse HelpPage(PluginSession& session, const RequestTarget& target) {
  const auto format = target.Parameter(kFormat);
  HttpResponse response = format ? AskHelp(session, *format) : session.Invoke(kHelp, {});
  if (response.status != 200 || !response.body.starts_with('"')) return response;
  auto text = ReadJsonString(response.body);
  if (!text) return response;
  return {.status = 200, .contentType = "text/plain; charset=utf-8", .body = std::move(*text)};
}

HttpResponse OpenApiPage(PluginSession& session) {
  HttpResponse help = AskHelp(session, kFullFormat);
  if (help.status >= 400) return help;
  auto document = MakeOpenApiDocument({.name = session.FullName(),
                                       .version = session.Version(),
                                       .api = &session.Api(),
                                       .help = help.body});
  return document ? JsonResponse(std::move(document.GetValue()))
                  : ProblemResponse(500, document.GetFailure().text);
}

}  // namespace

ControlGroup DescriptionControls(SessionManager* sessions) {
  return {
      {"GetHelp",
       [sessions](const HostCall& call) {
         return WithSession(
             sessions, [&call](PluginSession& session) { return HelpPage(session, call.target); });
       }},
      {"GetOpenApi", [sessions](const HostCall&) { return WithSession(sessions, OpenApiPage); }}};
}

}  // namespace Kest::Host
