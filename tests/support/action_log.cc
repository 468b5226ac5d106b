#include "tests/support/action_log.h"

#include <algorithm>

namespace Kest::Testing {

std::string Print(const Action& action) {
  constexpr const char* kNames[] = {"#",     "request",  "subscribe", "unsubscribe", "publish",
                                    "post",  "run",      "wait",      "wait over",   "log",
                                    "event", "response", "identify"};
  std::string line = kNames[action.kind];
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

}  // namespace Kest::Testing
