// ActionLog is what a plugin under test did, as one ordered list.
//
// Threads: any.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace Kest::Testing {

struct FakeRequest {
  std::string method;
  std::string url;  // with the query
  std::string body;

  std::string Path() const { return url.substr(0, url.find('?')); }
};

struct PublishedEvent {
  std::string path;
  std::string type;  // "Create", "Update" or "Delete"
  std::string json;
};

// One thing that happened; `name` and `detail` by kind.
struct Action {
  enum Kind {
    kStep,         // what the test does
    kRequest,      // "POST /url", body
    kSubscribe,    // event name
    kUnsubscribe,  // event name
    kPublish,      // "Update /path", JSON
    kPost,         // task name, "merged" or "refused" or nothing
    kRun,          // task name: a posted task begins
    kWait,         // label
    kWaitEnd,
    kLog,       // line, without its line feed
    kEvent,     // event name, payload: it is delivered
    kResponse,  // "GET /url", status and body or message of what the test asked
    kIdentify,  // full name, user agent
  };
  Kind kind;
  std::string name;
  std::string detail = {};
  int32_t level = 0;  // of a line
};

// "publish Update /tav-loot/v1/enabled true"
std::string Print(const Action& action);

class ActionLog {
 public:
  // Those of the given kinds, or all.
  std::vector<Action> Actions(std::initializer_list<Action::Kind> kinds = {}) const;
  std::vector<std::string> Printed(std::initializer_list<Action::Kind> kinds) const;
  std::vector<PublishedEvent> PublishedEvents() const;  // since ForgetPublished
  void ForgetPublished();

 protected:
  ~ActionLog() = default;
  void Record(Action action);

 private:
  mutable std::mutex mutex_;
  std::vector<Action> actions_;  // guarded by mutex_
  size_t publishedBefore_ = 0;   // events that ForgetPublished hides
};

}  // namespace Kest::Testing
