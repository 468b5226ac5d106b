#include "host/session/readiness.h"

#include <chrono>
#include <utility>

#include "host/json/json.h"

namespace Kest::Host {
namespace {

constexpr auto kMoment = std::chrono::milliseconds(50);
constexpr char kNotRunning[] = "The plugin is not running.";
constexpr std::string_view kSessionPath = "/tav-login/v1/session";
constexpr std::string_view kInventoryTarget = "/tav-loot/v1/player-display-categories";

HttpResponse Read(PluginSession& session, std::string_view target) {
  HttpRequest request;
  request.method = "GET";
  request.target = target;
  return session.Request(request);
}

bool IsServed(PluginSession& session, std::string_view target) {
  return Read(session, target).status == 200;
}

// What the plugin says about a decision of its own; empty when it explains nothing.
Json Explained(PluginSession& session, std::string_view question) {
  const HttpResponse response = session.Explain(question);
  Json explanation = response.status == 200 ? ParseJson(response.body) : Json();
  return explanation.is_object() ? explanation : Json::object();
}

std::string SignedInReason(PluginSession& session) {
  const Json connection = Explained(session, "ready").value("session", Json::object());
  const bool isConnected =
      connection.value("isConnected", session.SiblingPage(kSessionPath).status == 200);
  return isConnected ? "" : connection.value("reason", "No player is signed in.");
}

// A decision that is published at `target`.
struct Decision {
  std::string_view target;
  std::string_view question;
  const char* reason;  // of a plugin that explains nothing
};
constexpr Decision kEnabled = {"/tav-loot/v1/enabled", "enabled", "Loot is disabled."};
constexpr Decision kReady = {"/tav-loot/v1/ready", "ready", "Not all sources have responded."};

std::string ReasonUnlessTrue(PluginSession& session, const Decision& decision) {
  const HttpResponse response = Read(session, decision.target);
  if (response.status != 200) {
    return "The plugin responded with the status " + std::to_string(response.status) + ".";
  }
  if (response.body == "true") return {};
  const Json explanation = Explained(session, decision.question);
  std::string reason = explanation.value("reason", decision.reason);
  for (const Json& source : explanation.value("sources", Json::array())) {
    if (!source.value("isInGoal", false) || source.value("hasResponded", false)) continue;
    reason.append(" ").append(source.value("name", "")).append(": ");
    reason.append(source.value("reason", ""));
  }
  return reason;
}

}  // namespace

std::vector<std::string> ReadinessReport::Reasons() const {
  std::vector<std::string> reasons;
  for (const Check& check : checks) {
    if (!check.reason.empty()) reasons.push_back(check.reason);
  }
  return reasons;
}

ReadinessReport Readiness::Look() {
  ReadinessReport report;
  PluginSession* const session = sessions_->Current();
  report.checks.push_back({"plugin", session == nullptr ? kNotRunning : ""});
  if (session == nullptr) return report;
  report.checks.push_back({"signedIn", SignedInReason(*session)});
  report.checks.push_back({"enabled", ReasonUnlessTrue(*session, kEnabled)});
  for (const ReadinessReport::Check& check : report.checks) {
    if (!check.reason.empty()) return report;
  }
  report.checks.push_back({"sources", ReasonUnlessTrue(*session, kReady)});
  report.checks.push_back({"inventory", InventoryReason()});  // last, as it yields
  return report;
}

std::string Readiness::InventoryReason() {
  const uint64_t session = sessions_->Number();
  if (retrieval_->session != session) {
    retrieval_ = std::make_shared<Retrieval>();  // a task that still runs keeps the old one
    retrieval_->session = session;
  }
  const std::shared_ptr<Retrieval> retrieval = retrieval_;
  if (!retrieval->isDone && !std::exchange(retrieval->isRunning, true)) {
    scheduler_->Post({.name = "first retrieval", .work = [sessions = sessions_, kept = retrieval] {
                        PluginSession* const current = sessions->Current();
                        if (current != nullptr) kept->isDone = IsServed(*current, kInventoryTarget);
                        kept->isRunning = false;
                      }});
  }
  scheduler_->WatchUntil(kMoment, [&retrieval] { return !retrieval->isRunning; });
  if (retrieval->isDone) return {};
  PluginSession* const current = sessions_->Current();  // it may be another by now
  if (current == nullptr) return kNotRunning;
  const Json explanation = Explained(*current, "retrieval");
  return explanation.value("reason", "The inventory has not been retrieved.");
}

}  // namespace Kest::Host
