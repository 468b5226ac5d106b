// FakeHost is a plugin host for tests. It implements the whole service table, runs module tasks one
// at a time, and records what the plugin does. Nothing happens by itself: the test says what exists
// and pumps.
//
// Tasks run on threads of their own that hand one baton around, so exactly one runs at a time, a
// task that yields really leaves its stack standing, and race detectors see ordinary threads.
// Service-proxy and platform-message events come on another thread still. A task posted while one
// of its name waits to run is merged with it. The clock stands still at kStartOfTime;
// AdvanceSeconds moves it.
//
//   FakeHost host;
//   host.SetResource("/tav-summoner/v1/current-summoner", R"({"summonerLevel":30})");
//   host.OnService("loot", "getClientConfiguration", [](auto&) { return ServiceReply{"{}"}; });
//   host.Load(&load_tav_loot);
//   host.Start();
//   EXPECT_EQ(host.Get("/tav-loot/v1/enabled").body, "true");
//   EXPECT_THAT(host.Published("/tav-loot/v1/ready"), ElementsAre("true"));
//
// Threads: the test's thread only; handlers given to OnRequest and OnService run on a task.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "plugin/host_interface.h"
#include "tests/support/task_pump.h"

namespace Kest::Testing {

struct FakeRequest {
  std::string method;
  std::string url;  // with the query
  std::string body;

  std::string Path() const { return url.substr(0, url.find('?')); }
};

struct FakeAnswer {
  int32_t status = 200;
  std::string body = {};
  std::string message = {};
  std::string contentType = "application/json";
  bool held = false;  // answered by ReleaseHeld only
};

// What a platform service's method answers.
struct ServiceReply {
  std::string payload = {};  // JSON
  std::string error = {};
  bool held = false;  // answered by ReleaseHeld only
};

struct PublishedEvent {
  std::string path;
  std::string type;  // "Create", "Update" or "Delete"
  std::string json;

  friend bool operator==(const PublishedEvent&, const PublishedEvent&) = default;
};

struct LoggedLine {
  int32_t level = 0;
  std::string text;
};

class FakeHost {
 public:
  static constexpr int64_t kStartOfTime = 1'700'000'000;  // seconds since 1970

  FakeHost();
  ~FakeHost();  // stops the plugin when the test has not
  FakeHost(const FakeHost&) = delete;
  FakeHost& operator=(const FakeHost&) = delete;

  // ---- The plugin's life ------------------------------------------------------------------------
  void Load(const std::function<void(KestHandshakeBlock*)>& handshake);
  bool Start();  // runs until idle; start's answer
  void Stop();   // runs until stop has returned
  const KestHandshakeBlock& Block() const { return block_; }
  const KestHostServices* Services() const { return &table_; }

  // ---- What exists around the plugin ------------------------------------------------------------
  using RequestHandler = std::function<FakeAnswer(const FakeRequest&)>;
  // The answer to (method, path); the path is without the query. Unknown ones answer 404.
  void OnRequest(std::string_view method, std::string_view path, RequestHandler handler);
  void OnRequest(std::string_view method, std::string_view path, FakeAnswer answer);
  // A method of a platform service, whichever of the three endpoints it is called through. `call`
  // is the posted body: {"serviceName","methodName","args",...}. Unknown ones never answer.
  using ServiceHandler = std::function<ServiceReply(const std::string& call)>;
  void OnService(std::string_view service, std::string_view method, ServiceHandler handler);
  // Sets another plugin's resource, tells those who follow it and runs until idle; a GET of its
  // path answers it. RemoveResource deletes it.
  void SetResource(std::string_view path, std::string_view json);
  void RemoveResource(std::string_view path);
  void Login(uint64_t summonerId, std::string_view state = "SUCCEEDED", uint64_t accountId = 1);
  void SendSvds(std::string_view subtopic, std::string_view bodyJson);
  // Any event, by its subscribed name; nothing happens when nobody subscribed.
  void DeliverEvent(std::string_view name, std::string_view json);
  // Answers what was held: everything, or the requests to one path / the calls of one method.
  void ReleaseHeld(std::string_view pathOrMethod = {});
  // Every later postTask, request or subscribe is refused.
  void RefuseEverything() { refuse_ = true; }
  void AdvanceSeconds(int64_t seconds);

  // ---- Driving the plugin -----------------------------------------------------------------------
  struct Reply {
    int32_t status = 0;  // 0: no answer yet
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
  // Sends without running; the reply fills in as the test pumps.
  std::shared_ptr<const Reply> StartRequest(std::string_view method, std::string_view url,
                                            std::string_view body = {});
  Reply Invoke(std::string_view function);
  // Runs `work` as a module task, until idle.
  void RunTask(std::function<void()> work);
  // Runs tasks and deliveries until nothing can go on without the test.
  void RunUntilIdle() { pump_.RunUntilIdle(); }

  // ---- What the plugin did ----------------------------------------------------------------------
  std::vector<std::string> Published(std::string_view path) const;  // JSON, "" for a Delete
  const std::vector<PublishedEvent>& PublishedEvents() const { return published_; }
  void ForgetPublished() { published_.clear(); }
  const std::vector<FakeRequest>& Requests() const { return requests_; }
  std::vector<FakeRequest> RequestsTo(std::string_view path) const;
  // Posted bodies of the calls of one service method, in order.
  std::vector<std::string> ServiceCalls(std::string_view service, std::string_view method) const;
  std::vector<LoggedLine> Lines() const;
  bool HasLine(std::string_view part) const { return CountLines(part) != 0; }
  size_t CountLines(std::string_view part) const;
  std::vector<std::string> PostedTasks() const;  // names, in order, merged ones too
  std::vector<std::string> Subscriptions() const;
  // "+name" and "-name", in order.
  const std::vector<std::string>& SubscriptionLog() const { return subscriptionLog_; }
  const std::vector<std::string>& Waits() const { return waits_; }  // labels, "" for an end
  const std::string& UserAgent() const { return userAgent_; }

 private:
  using Name = std::pair<std::string, std::string>;  // of a method: its url or service, and itself
  struct Subscription {
    KestDelivery delivery;
    void* context;
    uint64_t serial;
  };
  struct Held {
    std::string key;
    std::function<void()> release;
  };
  struct Table : KestHostServices {
    FakeHost* host;
  };

  void FillTable();
  bool OnHostRequest(const KestRequest& request, KestCompletion completion, void* context);
  bool OnSubscribe(std::string_view name, KestDelivery delivery, void* context);
  void OnUnsubscribe(std::string_view name);
  int32_t OnPostTask(std::string_view name, KestTask run, void* context);
  FakeAnswer AnswerTo(const FakeRequest& request, const std::string& path);
  FakeAnswer AnswerServiceCall(const FakeRequest& request, const std::string& path);
  void TakeReply(const KestResponse* response, Reply* reply);
  void Queue(std::string_view key, bool isHeld, std::function<void()> work);
  void TellFollowers(std::string_view path, std::string_view type, std::string_view json);

  Table table_{};
  KestHandshakeBlock block_{};
  bool stopped_ = false;

  std::atomic<bool> refuse_ = false;
  uint64_t nextUuid_ = 0;
  uint64_t nextSubscription_ = 0;
  std::map<Name, RequestHandler> handlers_;
  std::map<Name, ServiceHandler> services_;
  std::map<std::string, std::string, std::less<>> resources_;
  std::vector<Held> held_;

  std::vector<FakeRequest> requests_;
  std::map<Name, std::vector<std::string>> serviceCalls_;
  std::vector<PublishedEvent> published_;
  std::vector<std::string> subscriptionLog_;
  std::vector<std::string> waits_;
  std::string userAgent_;

  mutable std::mutex mutex_;  // over what follows: any thread may come here
  std::map<std::string, Subscription, std::less<>> subscriptions_;
  std::vector<LoggedLine> lines_;
  std::vector<std::string> postedTasks_;
  std::set<std::string> waitingTasks_;  // names

  TaskPump pump_;  // last: its threads use all the above
};

}  // namespace Kest::Testing
