#include "host/controls/explain_controls.h"

#include <string>
#include <string_view>

#include "host/controls/with_session.h"
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

}  // namespace

ControlGroup ExplainControls(SessionManager* sessions) {
  ControlGroup group;
  for (const Question& question : kQuestions) {
    group.push_back({question.operationId, [sessions, &question](const HostCall& call) {
                       return WithSession(sessions, [&](PluginSession& session) {
                         return session.Explain(AskedBy(call, question));
                       });
                     }});
  }
  return group;
}

}  // namespace Kest::Host
