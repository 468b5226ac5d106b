// Compares, whenever the host is idle, what can be read from the plugin with what it published:
// each change has an event, each event brought a change, the items add up to the maps, the version
// counts the publications, and the counts are the platform's.
//
// Threads: [task] on the scheduler's tasks, except where a function says otherwise.
// Effects: none on what it watches. It reads only what has no effect on the plugin (routes.h says
//          what that leaves out and why), and its reads are in no timeline and no statistics.
// Growth:  the last value of each path is kept as a hash. Of views at most kMostViews are compared,
//          of single items at most kMostItems each time: those published since the last time first.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "host/audit/comparisons.h"
#include "host/audit/published_state.h"
#include "host/audit/routes.h"
#include "host/auditor/audit_findings.h"
#include "host/auditor/audit_mode.h"
#include "host/auditor/platform_knowledge.h"
#include "host/session/event_stream.h"
#include "host/session/service_event_thread.h"
#include "host/session/session_manager.h"
#include "host/session/session_observer.h"

namespace Kest::Host {

class Auditor : public SessionObserver, private FindingSink {
 public:
  static constexpr size_t kMostViews = 256;
  static constexpr size_t kMostItems = 128;

  // All outlive the auditor.
  struct Parts {
    SessionManager* sessions;
    const ServiceEventThread* serviceEvents;
    const EventStream* stream;
    const HostClock* clock;
    HostLog* log;
  };
  // `fail` is called for each finding while the mode is strict.
  Auditor(AuditMode mode, const Parts& parts, std::function<void(const std::string&)> fail);

  // What was published before counts as compared when the auditor is switched on.
  void SetMode(AuditMode mode);
  // On the scheduler's thread: whether something has happened since the last run that may be
  // compared now. A request that still runs is the scheduler's affair.
  bool IsDue() const;
  // REQUIRES: nothing else is left to do.
  void Run();
  // Mode, runs, what was compared last, findings and the table of routes.
  Json Report() const;

  void OnBegin() override;
  void OnPublished(uint64_t event, std::string_view path, int32_t eventType,
                   std::string_view json) override;
  void OnWorldCall(const World& world, std::span<const WorldEvent> caused, bool isControl) override;
  void OnFault(std::string_view name) override { knowledge_.NoteFault(name); }
  void OnResourceEvent() override { isDue_ = true; }
  void OnServiceEvent(uint64_t cause) override;
  void OnResponse(const HttpRequest& request, const HttpResponse& response) override;

 private:
  struct Compared {
    int64_t time = 0;
    size_t values = 0;
    size_t items = 0;  // of the maps
    size_t single = 0;
    size_t views = 0;
    bool platform = false;
  };

  void Take(Finding finding) override;
  void Forget();
  std::optional<std::string> Read(PluginSession& session, std::string_view path);
  void CompareValues(PluginSession& session, bool hasInventory);
  void CompareValue(PluginSession& session, const std::string& path);
  void CompareItems(PluginSession& session);
  // Whether they are what was published.
  bool CompareMaps(const ReadMap& map, const ReadMap& versioned);
  void CompareList(const ReadMap& map, std::string_view list);
  void ComparePlatform(const World& world, const Counts& counts);
  void CompareSingleItems(PluginSession& session);
  void CompareSingleItem(PluginSession& session, const std::string& lootId);
  std::set<std::string> ChooseItems();
  // The event last published for a path; empty, with the number 0, when it is not held.
  PublishedEvent LastEvent(std::string_view path) const;
  void AddDifference(const std::string& path, std::string read);
  void AddMismatch(const std::string& check, const std::string& path, std::string expected,
                   std::string found);

  const Parts parts_;
  const std::function<void(const std::string&)> fail_;
  AuditMode mode_;
  std::atomic<bool> isDue_ = false;
  bool mustAdopt_ = true;   // events of this session went by unseen
  bool isReading_ = false;  // a run is reading
  uint64_t event_ = 0;      // that findings are about
  uint64_t begin_ = 0;      // the newest event when the plugin started
  AuditFindings findings_;
  PublishedState published_{this};
  PlatformKnowledge knowledge_;
  std::set<std::string> views_;     // paths
  std::set<std::string> newItems_;  // loot ids published since the last run
  std::string lastItem_;            // single items were read up to here
  uint64_t runs_ = 0;
  Compared compared_;
};

}  // namespace Kest::Host
