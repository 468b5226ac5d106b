// HostServices is the C++ face of the host's service table: it owns what the C interface needs to
// stay alive (subscribed handlers, open completions, queued tasks), lets every call that comes back
// pass the gate, and keeps exceptions on its own side.
//
// Threads:  PostTask and IsStopping on any thread, everything else on module tasks. Handlers
//           and completions run on module tasks, except the handlers of service-proxy and platform
//           message events, which run on the thread the host delivers them on.
// Lifetime: made at the handshake, attached at start; outlives the plugin object.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "api/http_names.h"
#include "api/response.h"
#include "base/maybe_type.h"
#include "base/mutex.h"
#include "base/platform.h"
#include "plugin/entry_gate.h"
#include "plugin/host_interface.h"
#include "plugin/plugin_events.h"
#include "plugin/runtime_counters.h"

namespace Kest {

// A request to another plugin or to the host, lent for the call.
struct HostRequest {
  HttpMethod method = HttpMethod::kGet;
  std::string_view url;  // percent-encoded path, and "?" with the query when there is one
  std::string_view contentType;
  std::string_view body;
};

enum class TaskPosting { kRefused, kQueued, kMerged };

class HostServices {
 public:
  // The response, of any status, or why there is none: "Finalizing" at stop, otherwise that the
  // host did not accept the request.
  using Completion = std::function<void(Maybe<Response> response)>;
  // `body` is the event's JSON, lent for the call.
  using EventHandler = std::function<void(std::string_view body)>;

  HostServices(EntryGate& gate, RuntimeCounters& counters);
  ~HostServices();
  HostServices(const HostServices&) = delete;
  HostServices& operator=(const HostServices&) = delete;

  // Before Attach every call does nothing and returns a failure.
  void Attach(const KestHostServices* services);
  // True as soon as stop has begun.
  bool IsStopping() const { return gate_.IsClosed(); }

  // Calls `completion` exactly once: later with the response, or at once when nothing was sent.
  void Request(const HostRequest& request, Completion completion);

  // One handler for each name; a second one replaces the first. False: the host refused, nothing
  // is kept.
  bool Subscribe(std::string_view name, EventHandler handler);
  void Unsubscribe(std::string_view name);
  // Subscribes again, so that the host queues the resource's present value once more: for an event
  // that was lost for lack of memory. Needs none itself. False: the host refused.
  bool Resubscribe(std::string_view name);

  // `json` is ignored for kDelete. False: not published.
  bool Publish(std::string_view path, ResourceEventType type, std::string_view json);

  // Queues `run` as a module task. kMerged: a task of that name is queued already and
  // serves for this one, `run` is dropped: give each task that must run a name of its own. A task
  // that is still queued when stop begins is dropped too.
  TaskPosting PostTask(std::string_view name, std::function<void()> run);

  void WaitBegin(std::string_view label);
  void WaitEnd();
  void Yield();

  // The host's time in seconds since 1970, or the system's where the host offers none.
  int64_t NowSeconds() const;
  // Fills `*uuid` with a fresh unique id of the host, or of the system. False: there is none.
  [[nodiscard]] bool CreateUuid(UuidBytes* uuid);

  // [any thread] What the calling code follows from, by the host's count.
  uint64_t Cause() const;
  // For a scope, what the running task does follows from something else.
  class CauseScope {
   public:
    CauseScope(HostServices& host, uint64_t cause);
    ~CauseScope();
    CauseScope(const CauseScope&) = delete;
    CauseScope& operator=(const CauseScope&) = delete;

   private:
    HostServices& host_;
    const uint64_t former_;
  };

  void SendTelemetry(std::string_view name, std::string_view json);
  void Identify(std::string_view fullName, std::string_view userAgent);

  // For stop, with the gate closed. CancelAll drops the subscriptions and queued tasks and ends
  // every open request with "Finalizing"; Release, at the very end, frees what the host might still
  // have called back with, and the host's table is not used any more. Neither needs memory.
  void CancelAll() noexcept;
  void Release();

 private:
  // What the host hands back with a completion or a task. It stays until the host has used it or
  // Release, so that a late call finds it.
  struct PendingRequest;
  using PendingRequestMap = std::map<uint64_t, std::unique_ptr<PendingRequest>>;  // by serial
  using HandlerMap = std::map<std::string, std::shared_ptr<const EventHandler>, std::less<>>;

  static void KEST_ABI OnCompletion(void* context, const KestResponse* response) noexcept;
  static void KEST_ABI OnTask(void* context) noexcept;
  static void KEST_ABI OnDelivery(void* context, KestText name, KestText contentType,
                                  KestBytes body) noexcept;
  PendingRequest* AddPendingRequest(std::unique_ptr<PendingRequest> pending) KEST_EXCLUDES(mutex_);
  std::unique_ptr<PendingRequest> TakePendingRequest(const PendingRequest* pending)
      KEST_EXCLUDES(mutex_);
  bool DropHandler(std::string_view name) KEST_EXCLUDES(mutex_);

  EntryGate& gate_;
  RuntimeCounters& counters_;
  const KestHostServices* services_ = nullptr;

  Mutex mutex_;  // never held while the host or a handler is called
  PendingRequestMap pendingRequests_ KEST_GUARDED_BY(mutex_);
  uint64_t nextSerial_ KEST_GUARDED_BY(mutex_) = 0;
  HandlerMap handlers_ KEST_GUARDED_BY(mutex_);
};

}  // namespace Kest
