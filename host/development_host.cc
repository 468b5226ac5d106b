#include "host/development_host.h"

#include <chrono>
#include <functional>
#include <future>
#include <utility>

#include "base/platform.h"
#include "host/controls/clock_controls.h"
#include "host/controls/console_controls.h"
#include "host/controls/description_controls.h"
#include "host/controls/event_controls.h"
#include "host/controls/explain_controls.h"
#include "host/controls/session_controls.h"
#include "host/controls/timeline_controls.h"
#include "host/json/json_text.h"
#include "host/world_source.h"

namespace Kest::Host {
namespace {

constexpr auto kTaskLimit = std::chrono::seconds(30);
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
          clock_),
      sessions_(options_.pluginPath,
                [this] { return LoadWorld(options_.worldPath, options_.seed); }, options_.signsIn,
                {&scheduler_, &serviceEvents_, &stream_, log, &traffic_, &clock_, options_.seed}),
      clockDriver_(&clock_, &scheduler_, &serviceEvents_, &timeline_),
      control_({SessionControls({&scheduler_, &serviceEvents_, &stream_, &sessions_, log, &clock_}),
                EventControls(&stream_), DescriptionControls(&sessions_),
                ClockControls(&clockDriver_), TimelineControls(&traffic_, &timelineStream_),
                ConsoleControls(), ExplainControls(&sessions_)},
               &sessions_),
      guard_(options_.address, options_.allowedOrigins),
      router_(&scheduler_, &sessions_, &control_, &traffic_, log) {
  scheduler_.SetOutsideEvents([this] { return serviceEvents_.DeliverOne(); });
  log_->SetClock([this] { return clock_.Now(); });
  log_->SetListener([this](LogLevel level, std::string_view text) {
    timeline_.Add({.kind = RowKind::kLog,
                   .name = "host",
                   .status = std::string(LogLevelName(static_cast<int32_t>(level))),
                   .summary = std::string(text)});
  });
  timeline_.SetListener(
      [this](const std::string& row) { timelineStream_.AppendFrame("row", row); });
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
  server_ = std::move(server.GetValue());
  stream_.SetListener([this] { server_->WakeStreams(); });
  timelineStream_.SetListener([this] { server_->WakeStreams(); });
  const auto started = RunTask<Maybe<Nothing>>("start", [this] { return sessions_.Start(); });
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

std::string DevelopmentHost::ReadyLine() const {
  const bool isIpv6 = options_.address.find(':') != std::string::npos;
  const std::string name = isIpv6 ? "[" + options_.address + "]" : options_.address;
  const std::string port = std::to_string(server_->Port());
  return "{\"ready\":true,\"address\":" + JsonString(options_.address) + ",\"port\":" + port +
         ",\"url\":" + JsonString("http://" + name + ":" + port + "/") + "}";
}

}  // namespace Kest::Host
