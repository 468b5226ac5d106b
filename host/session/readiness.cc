#include "host/session/readiness.h"

#include <chrono>
#include "host/cause/cause.h"
#include "host/json/json.h"

namespace Kest::Host {
namespace {

constexpr auto kMoment = std::chrono::seconds(2);
constexpr char kNotRunning[] = "The plugin is not running.";
constexpr std::string_view kSessionPath = "/tav-login/v1/session";
constexpr std::string_view kInventoryTarget = "/tav-loot/v1/player-display-categories";

bool IsServed(PluginSession& session, std::string_view target) {
  HttpRequest request;
  request.method = "GET";
  request.target = target;
  return session.Request(request).status == 200;
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
  const HttpResponse response = session.ReadAside(std::string(decision.target));
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
    if (source.value("waitsFor", "") != "resource") continue;
    const int status = session.GetWorld().FollowedStatus(source.value("path", ""));
    if (status == 200) continue;
    reason.append(" Its owner responds with the status ").append(std::to_string(status));
    reason.append(".");
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
  ReadUnlessRead();
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
  report.checks.push_back({"inventory", InventoryReason(*session)});
  return report;
}

std::string Readiness::InventoryReason(PluginSession& session) const {
  const Json explanation = Explained(session, "retrieval");
  const bool isHeld = retrieval_->session == sessions_->Number() && retrieval_->isDone;
  if (!explanation.value("isPending", !isHeld)) return {};
  return explanation.value("reason", "The inventory has not been retrieved.");
}

bool Readiness::WaitsForReader() const {
  PluginSession* const session = sessions_->Current();
  if (session == nullptr || InventoryReason(*session).empty()) return false;
  const bool isOnItsWay = Explained(*session, "retrieval").value("running", 0) > 0 ||
                          (retrieval_->session == sessions_->Number() && retrieval_->isRunning);
  return !isOnItsWay && SignedInReason(*session).empty() &&
         ReasonUnlessTrue(*session, kEnabled).empty();
}

void Readiness::ReadUnlessRead() {
  const auto isQuiet = [this] { return serviceEvents_->Quiet(); };
  const auto always = [] { return true; };
  if (!WaitsForReader() || !scheduler_->WaitUntilQuiet(kMoment, isQuiet, always) ||
      !WaitsForReader()) {
    return;
  }
  const auto retrieval = std::make_shared<Retrieval>();
  retrieval->session = sessions_->Number();
  retrieval_ = retrieval;
  const CauseScope scope(timeline_->Add({.kind = RowKind::kSession, .name = "first read"}));
  scheduler_->Post({.name = "first read", .work = [sessions = sessions_, retrieval] {
                      PluginSession* const current = sessions->Current();
                      if (current != nullptr) {
                        retrieval->isDone = IsServed(*current, kInventoryTarget);
                      }
                      retrieval->isRunning = false;
                    }});
  scheduler_->WatchUntilSettled(kMoment, [&retrieval] { return !retrieval->isRunning; });
}

}  // namespace Kest::Host
