#include "host/development_host.h"

#include <chrono>
#include <functional>
#include <utility>

#include "base/platform.h"
#include "host/controls/audit_controls.h"
#include "host/controls/clock_controls.h"
#include "host/controls/console_controls.h"
#include "host/controls/description_controls.h"
#include "host/controls/docs_controls.h"
#include "host/controls/event_controls.h"
#include "host/controls/explain_controls.h"
#include "host/controls/log_controls.h"
#include "host/controls/scenario_controls.h"
#include "host/controls/session_controls.h"
#include "host/controls/timeline_controls.h"
#include "host/controls/wait_controls.h"
#include "host/json/json_text.h"

namespace Kest::Host {
namespace {

constexpr auto kTaskLimit = std::chrono::seconds(30);
constexpr auto kReadyLimit = std::chrono::seconds(20);  // less than that of a task
constexpr auto kFarewell = std::chrono::seconds(2);

}  // namespace

DevelopmentHost::DevelopmentHost(HostOptions options, HostLog* log)
    : options_(std::move(options)),
      log_(log),
      clock_(options_.clock),
      timeline_([this] { return clock_.Now(); }),
      scheduler_(
          [log](std::string_view task, std::string_view text) {
            log->Write(LogLevel::kError,
                       "Task \"" + std::string(task) + "\" failed: " + std::string(text));
          },
          clock_),
      serviceEvents_(
          [this](const ServiceEventThread::Event& event) {
            sessions_.DeliverServiceEvent(event);
            scheduler_.Wake();
          },
          clock_, [this] { scheduler_.Wake(); }),
      copies_(options_.pluginPath),
      auditor_(options_.audit, {&sessions_, &serviceEvents_, &stream_, &clock_, log},
               [this](const std::string& text) { TakeFinding(text); }),
      sessions_(options_.pluginPath, options_.signsIn,
                {.scheduler = &scheduler_,
                 .serviceEvents = &serviceEvents_,
                 .stream = &stream_,
                 .log = log,
                 .traffic = &traffic_,
                 .clock = &clock_,
                 .seed = options_.seed,
                 .worldChanged = [this](const World& world) { scenarios_.Keep(world); },
                 .observer = &auditor_,
                 .enter =
                     [this](KestLoadFunction load, KestHandshakeBlock* block) {
                       if (recorder_) return recorder_->Enter(load, block);
                       load(block);
                       return std::shared_ptr<void>();
                     }}),
      scenarios_({.start = {.scenario = options_.scenario, .file = options_.worldPath},
                  .seed = options_.seed,
                  .stateFolder = options_.stateFolder},
                 {&scheduler_, &sessions_, log}),
      clockDriver_(&clock_, &scheduler_, &serviceEvents_, &timeline_),
      readiness_(&scheduler_, &serviceEvents_, &sessions_, &timeline_),
      control_({SessionControls({&scheduler_, &serviceEvents_, &stream_, &sessions_, &clock_}),
                LogControls(log, &sessions_), EventControls(&stream_),
                WaitControls({&scheduler_, &stream_, &readiness_}), DescriptionControls(&sessions_),
                ClockControls(&clockDriver_), TimelineControls(&traffic_, &timelineStream_),
                ConsoleControls(), DocsControls(), ExplainControls(&sessions_),
                ScenarioControls(&scenarios_, &sessions_), AuditControls(&auditor_)},
               &sessions_,
               [this](std::string_view operationId) { stream_.NoteControl(operationId); }),
      siblings_(options_.assetFolder, &sessions_),
      guard_(options_.address, options_.allowedOrigins),
      router_(&scheduler_, &sessions_, &control_, &siblings_, &traffic_, log) {
  scheduler_.SetOutsideEvents([this] { return serviceEvents_.DeliverOne(); });
  scheduler_.SetIdleWork(
      "audit", [this] { return auditor_.IsDue(); }, [this] { auditor_.Run(); });
  log_->SetClock([this] { return clock_.Now(); });
  log_->SetListener([this](LogLevel level, std::string_view text) {
    timeline_.Add({.kind = RowKind::kLog,
                   .name = "host",
                   .status = std::string(LogLevelName(static_cast<int32_t>(level))),
                   .summary = std::string(text)});
  });
  timeline_.SetListener(
      [this](const std::string& row) { timelineStream_.AppendFrame("row", row); });
  scenarios_.SetCaller([this](const HttpRequest& request) { return control_.Handle(request); });
}

DevelopmentHost::~DevelopmentHost() {
  scheduler_.End();  // before what its tasks use
  log_->SetClock(WallClockMilliseconds);
  log_->SetListener({});
}

// Runs `work` as a task and waits for its result; nothing when it takes too long.
template <typename Result>
std::optional<Result> DevelopmentHost::RunTask(const std::string& name,
                                               std::function<Result()> work) {
  auto promise = std::make_shared<std::promise<Result>>();
  std::future<Result> result = promise->get_future();
  scheduler_.Post(
      {.name = name, .work = [promise, work = std::move(work)] { promise->set_value(work()); }});
  if (result.wait_for(kTaskLimit) != std::future_status::ready) return std::nullopt;
  return result.get();
}

Maybe<Nothing> DevelopmentHost::Start() {
  auto server = HttpServer::Listen(options_.address, options_.port, HttpLimits{});
  if (!server) return server.GetFailure();
  if (const auto recording = StartRecording(); !recording) return recording.GetFailure();
  server_ = std::move(server.GetValue());
  stream_.SetListener([this] { server_->WakeStreams(); });
  timelineStream_.SetListener([this] { server_->WakeStreams(); });
  const auto started = RunTask<Maybe<Nothing>>("start", [this] { return StartSession(); });
  if (!started) return Failure{"The plugin did not start in time.", kTooLate};
  if (!*started) return started->GetFailure();
  server_->Serve(
      {.refuse =
           [this](const HttpRequest& request) {
             auto refusal = guard_.Refuse(request);
             return refusal ? std::move(refusal) : RequestRouter::Refuse(request);
           },
       .handle = [this](HttpRequest request,
                        const Respond& respond) { router_.Handle(std::move(request), respond); },
       .letsPageRead =
           [this](const HttpRequest& request) { return guard_.Allows(request.origin); }});
  return Nothing{};
}

Maybe<Nothing> DevelopmentHost::StartRecording() {
  if (options_.recordPath.empty()) return Nothing{};
  auto recorder = Recorder::Create(
      options_.recordPath, [this](std::string_view text) { log_->Write(LogLevel::kError, text); });
  if (!recorder) return recorder.GetFailure();
  recorder_ = std::move(recorder.GetValue());
  return Nothing{};
}

// A library that is followed is loaded from copies, so that it can be written meanwhile.
Maybe<Nothing> DevelopmentHost::StartSession() {
  FollowFiles();
  if (options_.followsPlugin) {
    auto copy = copies_.Make();
    if (!copy) return copy.GetFailure();
    sessions_.SetLibraryPath(std::move(copy.GetValue()));
  }
  auto started = scenarios_.Start();
  if (started && worldWatch_) worldWatch_->SetPaths(scenarios_.Files());
  return started;
}

void DevelopmentHost::FollowFiles() {
  const auto follow = [this](const std::string& path, const char* name, const auto& work) {
    return std::make_unique<FileWatch>(
        std::vector<std::string>{path},
        [this, name, work] {
          scheduler_.Post({.name = name, .work = work, .owner = this, .merge = true});
        },
        [this](const std::string& gone) {
          log_->Write(LogLevel::kWarning, gone + " is gone; what was read of it stays in effect.");
        });
  };
  if (options_.followsWorld) {
    worldWatch_ = follow(options_.worldPath, "world file saved", [this] {
      scenarios_.FollowFile();
      worldWatch_->SetPaths(scenarios_.Files());
    });
  }
  if (options_.followsPlugin) {
    pluginWatch_ = follow(options_.pluginPath, "plugin built",
                          [this] { scenarios_.FollowPlugin(copies_.Make()); });
  }
}

Maybe<Nothing> DevelopmentHost::Stop() {
  const auto stopped = RunTask<bool>("stop", [this] {
    sessions_.Stop();
    return true;
  });
  scheduler_.Close();
  if (server_) server_->Finish(kFarewell);
  if (scheduler_.End() && stopped) return Nothing{};
  return Failure{"The plugin did not stop in time.", kTooLate};
}

std::vector<std::string> DevelopmentHost::AwaitReady() {
  // The first look begins what it waits for: see Readiness.
  const auto reasons = RunTask<std::vector<std::string>>("await ready", [this] {
    readiness_.Look();
    scheduler_.WaitUntilQuiet(
        kReadyLimit, [this] { return serviceEvents_.Quiet(); },
        [] { return true; });  // what waits for a frozen clock will not come by itself
    return readiness_.Look().Reasons();
  });
  return reasons ? *reasons : std::vector<std::string>{"The plugin takes too long."};
}

std::future<HttpResponse> DevelopmentHost::Ask(HttpRequest request) {
  const auto promise = std::make_shared<std::promise<HttpResponse>>();
  std::future<HttpResponse> response = promise->get_future();
  router_.Handle(std::move(request),
                 [promise](HttpResponse given) { promise->set_value(std::move(given)); });
  return response;
}

void DevelopmentHost::AwaitIdle() {
  RunTask<bool>("await idle", [this] {
    return scheduler_.WaitUntilQuiet(
        kReadyLimit, [this] { return serviceEvents_.Quiet(); }, [] { return true; });
  });
}

void DevelopmentHost::TakeFinding(const std::string& text) {
  {
    const MutexLock lock(findingMutex_);
    if (finding_) return;
    finding_ = text;
  }
  if (findingListener_) findingListener_();
}

std::optional<std::string> DevelopmentHost::AuditFinding() const {
  const MutexLock lock(findingMutex_);
  return finding_;
}

std::string DevelopmentHost::Url() const {
  const bool isIpv6 = options_.address.find(':') != std::string::npos;
  const std::string name = isIpv6 ? "[" + options_.address + "]" : options_.address;
  return "http://" + name + ":" + std::to_string(server_->Port()) + "/";
}

std::string DevelopmentHost::ReadyLine() const {
  return "{\"ready\":true,\"address\":" + JsonString(options_.address) +
         ",\"port\":" + std::to_string(server_->Port()) + ",\"url\":" + JsonString(Url()) + "}";
}

}  // namespace Kest::Host
