#include "host/controls/explain_controls.h"

#include <optional>
#include <string>
#include <string_view>

#include "host/controls/with_session.h"
#include "host/http/http_responses.h"
#include "host/json/json_text.h"
#include "host/url/url_text.h"

namespace Kest::Host {
namespace {

struct Question {
  std::string_view operationId;
  std::string_view name;
  std::string_view subject;  // the argument of the path that follows the name; empty: none does
};

constexpr Question kQuestions[] = {
    {"ExplainEnabled", "enabled", ""},         {"ExplainReady", "ready", ""},
    {"ExplainRetrieval", "retrieval", ""},     {"ExplainChest", "chest", ""},
    {"ExplainGrants", "grants", ""},           {"ExplainItem", "item", "lootId"},
    {"ExplainRecipe", "recipe", "recipeName"},
};

std::string AskedBy(const HostCall& call, const Question& question) {
  std::string asked(question.name);
  const auto subject = call.path.find(question.subject);
  if (subject != call.path.end()) asked.append("/").append(EncodePercent(subject->second));
  if (!call.target.query.empty()) asked.append("?").append(call.target.query);
  return asked;
}

// The query goes to the plugin as it came; there an empty item would be none at all.
std::optional<std::string> ItemsFault(const HostCall& call) {
  const auto items = call.target.Parameter("items");
  if (!items) return std::nullopt;
  const std::string enclosed = "," + *items + ",";
  if (enclosed.find(",,") == std::string::npos) return std::nullopt;
  return "items must be loot ids with a comma between two, found " + JsonString(*items) + ".";
}

HttpResponse Explain(SessionManager* sessions, const HostCall& call, const Question& question) {
  if (const auto fault = ItemsFault(call)) return ProblemResponse(400, *fault);
  return WithSession(
      sessions, [&](PluginSession& session) { return session.Explain(AskedBy(call, question)); });
}

}  // namespace

ControlGroup ExplainControls(SessionManager* sessions) {
  ControlGroup group;
  for (const Question& question : kQuestions) {
    group.push_back({question.operationId, [sessions, &question](const HostCall& call) {
                       return Explain(sessions, call, question);
                     }});
  }
  return group;
}

}  // namespace Kest::Host
