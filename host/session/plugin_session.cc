#include "host/session/plugin_session.h"

#include <chrono>
#include <utility>

#include "host/http/http_responses.h"
#include "host/library/c_views.h"

namespace Kest::Host {
namespace {

HttpResponse ToResponse(int status, std::string_view message, std::string_view contentType,
                        std::string_view body) {
  if (status < 200 || status > 599) {
    return ProblemResponse(502,
                           "The plugin responded with the status " + std::to_string(status) + ".");
  }
  if (status >= 400) return ProblemResponse(status, message);
  return {.status = status, .contentType = std::string(contentType), .body = std::string(body)};
}

}  // namespace

PluginSession::PluginSession(std::unique_ptr<PluginLibrary> library, std::unique_ptr<World> world,
                             const Surroundings& surroundings)
    : library_(std::move(library)),
      world_(std::move(world)),
      serviceEvents_(surroundings.serviceEvents),
      services_({surroundings.scheduler, surroundings.serviceEvents, surroundings.stream,
                 surroundings.log, surroundings.traffic, world_.get(), surroundings.clock,
                 surroundings.seed}) {
  world_->SetClock([clock = surroundings.clock] {
    return std::chrono::duration_cast<std::chrono::milliseconds>(clock->Elapsed()).count();
  });
}

Maybe<std::unique_ptr<PluginSession>> PluginSession::Open(const std::string& libraryPath,
                                                          std::unique_ptr<World> world,
                                                          const Surroundings& surroundings) {
  auto library = PluginLibrary::Open(libraryPath);
  if (!library) return library.GetFailure();
  const KestHandshakeBlock& block = library.GetValue()->Block();
  const bool canSet = KestCanSetLogging(block.api);
  if (canSet) {
    const LogLevel least =
        surroundings.log->settings().isVerbose ? LogLevel::kOkay : LogLevel::kWarning;
    block.api->setLogging(block.context, static_cast<int32_t>(least),
                          KEST_LOG_HOST | KEST_LOG_DEBUGGER);
  }
  surroundings.log->SetPrintsPlugin(canSet);
  return std::unique_ptr<PluginSession>(
      new PluginSession(std::move(library.GetValue()), std::move(world), surroundings));
}

bool PluginSession::Start() {
  const KestHandshakeBlock& block = library_->Block();
  serviceEvents_->Resume();
  mustStop_ = true;
  const bool isStarted = block.callbacks->start(block.context, services_.Table());
  if (!isStarted) Stop();
  return isStarted;
}

void PluginSession::Stop() {
  if (!std::exchange(mustStop_, false)) return;
  // An event that is being delivered on the other thread must not meet a plugin that has gone.
  serviceEvents_->Pause();
  const KestHandshakeBlock& block = library_->Block();
  block.callbacks->stop(block.context);
  serviceEvents_->Pause();
  services_.Close();
}

HttpResponse PluginSession::Request(const HttpRequest& request) {
  const KestHandshakeBlock& block = library_->Block();
  // Ordinary headers stay here: the plugin takes header pairs for arguments of its functions. What
  // the client accepts has a place of its own.
  const KestRequest asked = {
      Text(request.method), Text(request.target), nullptr, 0, Text(request.contentType),
      Bytes(request.body),  Text(request.accept)};
  return TakeResponse(block.api->request(block.context, &asked));
}

HttpResponse PluginSession::Invoke(std::string_view function,
                                   std::span<const KestValue> arguments) {
  const KestHandshakeBlock& block = library_->Block();
  return TakeResponse(
      block.api->invoke(block.context, Text(function), arguments.data(), arguments.size()));
}

HttpResponse PluginSession::Explain(std::string_view question) {
  const KestHandshakeBlock& block = library_->Block();
  if (!KestCanExplain(block.api)) {
    return ProblemResponse(501, "The plugin is older than explanations.");
  }
  HttpResponse response = TakeResponse(block.api->explain(block.context, Text(question)));
  response.variesByAccept = false;
  return response;
}

// Copies the plugin's response and gives it back.
HttpResponse PluginSession::TakeResponse(const KestResponse* given) {
  const KestHandshakeBlock& block = library_->Block();
  const auto giveBack = [&block](const KestResponse* owned) {
    block.api->release(block.context, owned);
  };
  const std::unique_ptr<const KestResponse, decltype(giveBack)> owned(given, giveBack);
  if (!owned) return ProblemResponse(500, "Out of memory");
  HttpResponse response =
      ToResponse(owned->status, View(owned->message), View(owned->contentType), View(owned->body));
  response.variesByAccept = response.status == 200;
  return response;
}

HttpResponse PluginSession::Control(const HttpRequest& request, std::string_view path) {
  const WorldResponse response = world_->Control(request.method, path, request.body);
  services_.DispatchWorldEvents();
  HttpResponse given =
      ToResponse(response.status, response.message, response.contentType, response.body);
  given.allow = response.allow;
  return given;
}

void PluginSession::HandFaultsTo(World& next) const {
  const std::string kept = world_->KeptFaults();
  if (!kept.empty()) next.Control("PUT", "/faults", kept);
}

std::string PluginSession::Version() const {
  const KestHandshakeBlock& block = library_->Block();
  return std::to_string(block.major) + "." + std::to_string(block.minor) + "." +
         std::to_string(block.patch);
}

KestStatistics PluginSession::Statistics() const {
  const KestHandshakeBlock& block = library_->Block();
  KestStatistics statistics = {};
  block.callbacks->statistics(block.context, &statistics);
  return statistics;
}

}  // namespace Kest::Host
