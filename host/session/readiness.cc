#include "host/session/readiness.h"

#include <chrono>
#include <utility>

#include "host/json/json.h"

namespace Kest::Host {
namespace {

constexpr auto kMoment = std::chrono::milliseconds(50);
constexpr std::string_view kSessionPath = "/tav-login/v1/session";
constexpr std::string_view kEnabledTarget = "/tav-loot/v1/enabled";
constexpr std::string_view kReadyTarget = "/tav-loot/v1/ready";
constexpr std::string_view kInventoryTarget = "/tav-loot/v1/player-display-categories";

HttpResponse Read(PluginSession& session, std::string_view target) {
  HttpRequest request;
  request.method = "GET";
  request.target = target;
  return session.Request(request);
}

// Why it does not hold, given what the endpoint returns; empty when it does.
std::string ReasonUnlessTrue(const HttpResponse& response, std::string_view reason) {
  if (response.status == 200 && response.body == "true") return {};
  if (response.status == 200) return std::string(reason);
  return "The plugin responded with the status " + std::to_string(response.status) + ".";
}

}  // namespace

void Readiness::Retrieval::Take(const HttpResponse& response) {
  isDone = response.status == 200;
  const Json problem = ParseJson(response.body);
  failure = !isDone && problem.is_object() ? problem.value("detail", "") : "";
}

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
  report.checks.push_back({"plugin", session == nullptr ? "The plugin is not running." : ""});
  if (session == nullptr) return report;
  const bool isSignedIn = session->SiblingPage(kSessionPath).status == 200;
  report.checks.push_back({"signedIn", isSignedIn ? "" : "No player is signed in."});
  report.checks.push_back(
      {"enabled", ReasonUnlessTrue(Read(*session, kEnabledTarget), "Loot is disabled.")});
  for (const ReadinessReport::Check& check : report.checks) {
    if (!check.reason.empty()) return report;
  }
  report.checks.push_back({"sources", ReasonUnlessTrue(Read(*session, kReadyTarget),
                                                       "Not all sources have responded.")});
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
                        if (current != nullptr) kept->Take(Read(*current, kInventoryTarget));
                        kept->isRunning = false;
                      }});
  }
  scheduler_->WatchUntil(kMoment, [&retrieval] { return !retrieval->isRunning; });
  if (retrieval->isDone) return {};
  return "The inventory has not been retrieved" +
         (retrieval->failure.empty() ? "." : ": " + retrieval->failure);
}

}  // namespace Kest::Host
