// FakeHost is a plugin host for tests: the development host's scheduler with a scripted platform
// under the service table. Nothing happens by itself: the test says what exists and runs the
// plugin.
//
// What the plugin does is one ordered list of actions (Actions, Print); every other function reads
// it. An entry of the service table that belongs on a module task fails the test when
// it is called elsewhere. A task posted while one of its name waits to run is merged with it.
// Service-proxy and platform-message events come on a thread of their own. Its clock is
// frozen at kStartOfTime; AdvanceSeconds moves it. Its request ids are all the same.
//
//   FakeHost host;
//   host.SetResource("/tav-summoner/v1/current-summoner", R"({"summonerLevel":30})");
//   host.OnService("loot", "getClientConfiguration", [](auto&) { return ServiceReply{"{}"}; });
//   host.Load(&load_tav_loot);
//   host.Start();
//   EXPECT_EQ(host.Get("/tav-loot/v1/enabled").body, "true");
//   EXPECT_THAT(host.Printed({Action::kPublish}), Contains("publish Update /tav-loot/v1/ready
//   true"));
//
// Threads: the test's thread only; handlers given to OnService run on a task.
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "plugin/host_interface.h"
#include "tests/support/action_log.h"
#include "tests/support/task_runner.h"

namespace Kest::Testing {

struct FakeResponse {
  int32_t status = 200;
  std::string body = {};
  std::string message = {};
  std::string contentType = "application/json";
  bool held = false;  // released by ReleaseHeld only
};

// What a platform service's method returns.
struct ServiceReply {
  std::string payload = {};  // JSON
  std::string error = {};
  bool held = false;   // released by ReleaseHeld only
  int32_t status = 0;  // of a session invocation; 0: 200, or 500 with an error
};

class FakeHost : public ActionLog {
 public:
  static constexpr int64_t kStartOfTime = 1'700'000'000;  // seconds since 1970

  FakeHost();
  ~FakeHost();  // stops the plugin when the test has not
  FakeHost(const FakeHost&) = delete;
  FakeHost& operator=(const FakeHost&) = delete;

  // ---- The plugin's life ------------------------------------------------------------------------
  void Load(const std::function<void(KestHandshakeBlock*)>& handshake);
  bool Start();  // runs until idle; start's result
  void Stop();   // runs until stop has returned
  const KestHandshakeBlock& Block() const { return block_; }
  const KestHostServices* Services() const { return &table_; }

  // ---- What exists around the plugin ------------------------------------------------------------
  // The response to (method, path); the path is without the query. Unknown ones get a 404.
  void OnRequest(std::string_view method, std::string_view path, FakeResponse response);
  // A method of a platform service, whichever of the three endpoints it is called through. `call`
  // is the posted body: {"serviceName","methodName","args",...}. Unknown ones never respond.
  using ServiceHandler = std::function<ServiceReply(const std::string& call)>;
  void OnService(std::string_view service, std::string_view method, ServiceHandler handler);
  // Sets another plugin's resource, notifies its followers and runs until idle; a GET of its path
  // returns it. RemoveResource deletes it.
  void SetResource(std::string_view path, std::string_view json);
  void RemoveResource(std::string_view path);
  void Login(uint64_t summonerId, std::string_view state = "SUCCEEDED", uint64_t accountId = 1);
  // Any event, by its subscribed name; nothing happens without a subscription.
  void DeliverEvent(std::string_view name, std::string_view json);
  // Responds to what was held: everything, or the requests to one path / the calls of one method.
  void ReleaseHeld(std::string_view pathOrMethod = {});
  // From now on the tasks that the plugin posts wait for RunHeldTasks, which runs one after the
  // other, each until idle, and those they post.
  void HoldTasks() { holdTasks_ = true; }
  void RunHeldTasks();
  // From now on a service event is delivered while no task runs, so that the order of all actions
  // is the same in every run.
  void KeepOrder() { runner_.KeepOrder(); }
  void RefuseUuids() { hasUuids_ = false; }
  // As a host that was compiled against a table of that size; before Start.
  void SetTableSize(uint32_t size) { table_.size = size; }
  // Every later postTask, request or subscribe is refused.
  void RefuseEverything() { refuse_ = true; }
  void AdvanceSeconds(int64_t seconds);
  // Runs inside the plugin's next publication, in its publish.
  void OnNextPublish(std::function<void()> work) { onNextPublish_ = std::move(work); }

  // ---- Driving the plugin -----------------------------------------------------------------------
  struct Reply {
    int32_t status = 0;  // 0: no response yet
    std::string message;
    std::string contentType;
    std::string body;
    bool done = false;
  };
  // Sends a request and runs until idle. `done` is false when its handler still waits.
  Reply Request(std::string_view method, std::string_view url, std::string_view body = {});
  Reply Get(std::string_view url) { return Request("GET", url); }
  Reply Post(std::string_view url, std::string_view body = {}) {
    return Request("POST", url, body);
  }
  // Sends without running; the reply fills in as the plugin runs.
  std::shared_ptr<const Reply> StartRequest(std::string_view method, std::string_view url,
                                            std::string_view body = {});
  Reply Invoke(std::string_view function);
  // Runs `work` as a module task, until idle.
  void RunTask(std::function<void()> work);
  // Runs tasks and deliveries until nothing can go on without the test.
  void RunUntilIdle() { runner_.RunUntilIdle(); }

  std::vector<std::string> Subscriptions() const;

 private:
  using Name = std::pair<std::string, std::string>;  // of a method: its url or service, and itself
  using Work = std::function<void()>;
  struct Subscription {
    KestDelivery delivery;
    void* context;
    uint64_t serial;
  };
  struct Held {
    std::string key;
    Work release;
  };
  struct Table : KestHostServices {
    FakeHost* host;
  };

  static FakeHost& OnTask(const KestHostServices* self, const char* entry);
  void FillTable();
  bool OnHostRequest(const KestRequest& request, KestCompletion completion, void* context);
  bool OnSubscribe(std::string_view name, KestDelivery delivery, void* context);
  int32_t OnPostTask(std::string_view name, KestTask run, void* context);
  FakeResponse ResponseTo(const FakeRequest& request, const std::string& path);
  FakeResponse RespondToServiceCall(const FakeRequest& request, const std::string& path);
  void TakeReply(const KestResponse* response, Reply* reply);
  void Queue(std::string_view key, bool isHeld, Work work);
  void NotifyFollowers(std::string_view path, std::string_view type, std::string_view json);
  Subscription SubscriptionOf(std::string_view name) const;
  void Record(Action action);
  void Step(std::string_view what) { Record({Action::kStep, std::string(what)}); }

  Table table_{};
  KestHandshakeBlock block_{};
  bool stopped_ = false;

  std::atomic<int64_t> now_ = kStartOfTime * 1000;
  std::atomic<bool> hasUuids_ = true;
  std::atomic<bool> refuse_ = false;
  std::atomic<bool> holdTasks_ = false;
  uint64_t nextUuid_ = 0;
  Work onNextPublish_;
  uint64_t nextSubscription_ = 0;
  std::map<Name, FakeResponse> responses_;
  std::map<Name, ServiceHandler> services_;
  std::map<std::string, std::string, std::less<>> resources_;
  std::vector<Held> held_;

  mutable std::mutex mutex_;  // over what follows: any thread may come here
  std::map<std::string, Subscription, std::less<>> subscriptions_;
  std::set<std::string> waitingTasks_;  // names
  std::deque<Work> heldTasks_;

  TaskRunner runner_;  // last: its threads use all the above
};

}  // namespace Kest::Testing
