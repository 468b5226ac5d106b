#include "loot/explain/explainer.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "api/http_names.h"
#include "base/utf8.h"
#include "binding/json/json_adapter.h"
#include "binding/tree/tree_literals.h"
#include "client/sibling_client.h"
#include "loot/calls/followed_paths.h"
#include "loot/explain/item_explanation.h"
#include "loot/explain/recipe_explanation.h"
#include "loot/explain/state_explanations.h"

namespace Kest::Client::Loot {
namespace {

constexpr std::string_view kEnabledPaths[] = {kConfigEnabledPath, kConfigClientEnabledPath};
constexpr std::string_view kReadyPaths[] = {kConfigGoalPath, kLoginSessionPath};
constexpr std::string_view kChestPaths[] = {kConfigChestEnabledPath, kConfigMinimumLevelPath,
                                            kSummonerPath, kLoginPacketPath};
constexpr std::string_view kGrantPaths[] = {kGameflowSessionPath, kLoginPacketPath};

// Of a list with commas; empty ones are left out.
void AppendIds(std::string_view list, std::vector<std::string>* ids) {
  while (!list.empty()) {
    const std::string_view id = list.substr(0, list.find(','));
    if (!id.empty()) ids->emplace_back(id);
    list.remove_prefix(std::min(id.size() + 1, list.size()));
  }
}

}  // namespace

const Explainer::Question Explainer::kQuestions[] = {
    {"enabled", "", "", &Explainer::Enabled, kEnabledPaths},
    {"ready", "", "", &Explainer::Ready, kReadyPaths},
    {"retrieval", "", "", &Explainer::Retrieval, {}},
    {"chest", "", "", &Explainer::Chest, kChestPaths},
    {"grants", "", "", &Explainer::Grants, kGrantPaths},
    {"item", "lootId", "", &Explainer::Item, {}},
    {"recipe", "name", "items", &Explainer::Recipe, {}},
};

std::string Explainer::KnownQuestions() {
  std::string known;
  for (const Question& question : kQuestions) {
    known.append(known.empty() ? "" : ", ").append(question.name);
    if (!question.subject.empty()) known.append("/{").append(question.subject).append("}");
    if (!question.argument.empty()) known.append("?").append(question.argument).append("=");
  }
  return known;
}

Response Explainer::Explain(std::string_view question) const {
  const Maybe<BindingProperty> found = Find(question);
  if (!found) return FailureResponse(found.GetFailure());
  Response response;
  ConversionContext context;
  WriteJson(context, found.GetValue(), &response.body);
  if (!context.Ok()) return InternalServerError(context.ErrorMessage());
  response.contentType = kContentTypeJson;
  return response;
}

Maybe<BindingProperty> Explainer::Find(std::string_view question) const {
  if (!IsValidUtf8(PercentDecode(question, PlusSign::kIsPlus))) {
    return Failure{"The question is not UTF-8.", kStatusBadRequest};
  }
  const UrlParts url = SplitUrl(question);
  const std::string_view name = url.path.substr(0, url.path.find('/'));
  const auto* const known = std::ranges::find(kQuestions, name, &Question::name);
  const bool hasSubject = name.size() < url.path.size();
  if (known == std::end(kQuestions) || hasSubject == known->subject.empty()) {
    return Failure{"There is no such question. Known: " + KnownQuestions() + ".", kStatusNotFound};
  }
  Asked asked;
  if (hasSubject) {
    asked.subject = PercentDecode(url.path.substr(name.size() + 1), PlusSign::kIsPlus);
  }
  std::string_view query = url.query;
  while (std::optional<QueryPair> pair = TakeQueryPair(&query)) {
    if (known->argument.empty() || pair->name != known->argument) {
      return Failure{
          "Unknown argument \"" + pair->name + "\" of the question \"" + std::string(name) + "\".",
          kStatusBadRequest};
    }
    asked.arguments.push_back(std::move(*pair));
  }
  Maybe<BindingProperty> explanation = (this->*known->explain)(asked);
  if (explanation) AddUnconverted(known->follows, &explanation.GetValue());
  return explanation;
}

void Explainer::AddUnconverted(std::span<const std::string_view> paths,
                               BindingProperty* explanation) const {
  for (const std::string_view path : paths) {
    const std::string_view failure = deciders_.client.ConversionFailureOf(path);
    if (failure.empty()) continue;
    BindingProperty& reason = explanation->GetOrAddMember("reason");
    std::string sentences(reason.AsString());
    sentences.append(" The newest value of ").append(path).append(" did not convert: ");
    reason.SetString(sentences.append(failure));
    explanation->GetOrAddMember("unconverted").Append() =
        Structure{{"path", path}, {"reason", failure}};
  }
}

Maybe<BindingProperty> Explainer::Enabled(const Asked&) const {
  return ExplainEnabled(deciders_.loot);
}

Maybe<BindingProperty> Explainer::Ready(const Asked&) const {
  return ExplainReady(deciders_.readiness, deciders_.sources, deciders_.logos, deciders_.session);
}

Maybe<BindingProperty> Explainer::Retrieval(const Asked&) const {
  return ExplainRetrieval(deciders_.retrieval, deciders_.loot);
}

Maybe<BindingProperty> Explainer::Chest(const Asked&) const {
  return ExplainChest(deciders_.chest);
}

Maybe<BindingProperty> Explainer::Grants(const Asked&) const {
  return ExplainGrants(deciders_.grants);
}

Maybe<BindingProperty> Explainer::Item(const Asked& asked) const {
  return ExplainItem(asked.subject, deciders_.state, deciders_.inventory, deciders_.retrieval,
                     deciders_.loot);
}

Maybe<BindingProperty> Explainer::Recipe(const Asked& asked) const {
  std::optional<std::vector<std::string>> items;
  for (const QueryPair& argument : asked.arguments) {
    if (!items) items.emplace();
    AppendIds(argument.value, &*items);
  }
  return ExplainRecipe(asked.subject, items, deciders_.state, deciders_.retrieval, deciders_.loot);
}

}  // namespace Kest::Client::Loot
