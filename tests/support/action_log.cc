#include "tests/support/action_log.h"

#include <algorithm>
#include <iterator>

namespace Kest::Testing {

std::string Print(const Action& action) {
  constexpr const char* kWords[] = {"#",     "request",  "subscribe", "unsubscribe", "publish",
                                    "post",  "run",      "wait",      "wait over",   "log",
                                    "event", "response", "identify"};
  std::string line = kWords[action.kind];
  for (const std::string& part : {action.name, action.detail}) {
    if (!part.empty()) line.append(" ").append(part);
  }
  return line;
}

void ActionLog::Record(Action action) {
  const std::lock_guard lock(mutex_);
  actions_.push_back(std::move(action));
}

std::vector<Action> ActionLog::Actions(std::initializer_list<Action::Kind> kinds) const {
  const std::lock_guard lock(mutex_);
  std::vector<Action> chosen;
  for (const Action& action : actions_) {
    const bool listed = std::find(kinds.begin(), kinds.end(), action.kind) != kinds.end();
    if (listed || kinds.size() == 0) chosen.push_back(action);
  }
  return chosen;
}

std::vector<std::string> ActionLog::Printed(std::initializer_list<Action::Kind> kinds) const {
  std::vector<std::string> lines;
  for (const Action& action : Actions(kinds)) lines.push_back(Print(action));
  return lines;
}

std::vector<PublishedEvent> ActionLog::PublishedEvents() const {
  std::vector<PublishedEvent> events;
  for (const Action& action : Actions({Action::kPublish})) {
    const size_t space = action.name.find(' ');
    events.push_back({action.name.substr(space + 1), action.name.substr(0, space), action.detail});
  }
  events.erase(events.begin(), events.begin() + static_cast<std::ptrdiff_t>(publishedBefore_));
  return events;
}

void ActionLog::ForgetPublished() {
  publishedBefore_ = Actions({Action::kPublish}).size();
}

std::vector<std::string> ActionLog::Published(std::string_view path) const {
  std::vector<std::string> bodies;
  for (const PublishedEvent& event : PublishedEvents()) {
    if (event.path == path) bodies.push_back(event.json);
  }
  return bodies;
}

std::vector<FakeRequest> ActionLog::Requests() const {
  std::vector<FakeRequest> requests;
  for (const Action& action : Actions({Action::kRequest})) {
    const size_t space = action.name.find(' ');
    requests.push_back(
        {action.name.substr(0, space), action.name.substr(space + 1), action.detail});
  }
  return requests;
}

std::vector<std::string> ActionLog::ServiceCalls(std::string_view service,
                                                 std::string_view method) const {
  const std::string begin = R"({"serviceName":")" + std::string(service) + R"(","methodName":")" +
                            std::string(method) + '"';
  std::vector<std::string> calls;
  for (const FakeRequest& request : Requests()) {
    if (request.body.starts_with(begin)) calls.push_back(request.body);
  }
  return calls;
}

std::vector<LoggedLine> ActionLog::Lines() const {
  std::vector<LoggedLine> lines;
  for (const Action& action : Actions({Action::kLog})) lines.push_back({action.level, action.name});
  return lines;
}

size_t ActionLog::CountLines(std::string_view part) const {
  const std::vector<std::string> lines = Printed({Action::kLog});
  return static_cast<size_t>(std::count_if(lines.begin(), lines.end(), [&](const auto& line) {
    return line.find(part) != std::string::npos;
  }));
}

}  // namespace Kest::Testing
