#include "host/session/plugin_session.h"

#include <chrono>
#include <utility>

#include "host/http/http_responses.h"
#include "host/library/methods.h"
#include "plugin/text_view.h"

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

// `words` are the low and the high half of a number.
void Subtract(uint64_t part, uint32_t (&words)[2]) {
  const uint64_t number = (words[0] | uint64_t{words[1]} << 32) - part;
  words[0] = static_cast<uint32_t>(number);
  words[1] = static_cast<uint32_t>(number >> 32);
}

}  // namespace

PluginSession::PluginSession(std::unique_ptr<PluginLibrary> library, std::unique_ptr<World> world,
                             const Surroundings& surroundings)
    : library_(std::move(library)),
      world_(std::move(world)),
      surroundings_(surroundings),
      services_({surroundings.scheduler, surroundings.serviceEvents, surroundings.stream,
                 surroundings.log, surroundings.traffic, world_.get(), surroundings.clock,
                 surroundings.seed, [this] { NoteWorldChange(); }, surroundings.observer}) {
  world_->SetClock([clock = surroundings.clock] {
    return std::chrono::duration_cast<std::chrono::milliseconds>(clock->Elapsed()).count();
  });
}

void PluginSession::ApplyLogLevel() {
  const KestHandshakeBlock& block = library_->Block();
  const bool canSet = KestCanSetLogging(block.api);
  if (canSet) {
    block.api->setLogging(block.context, static_cast<int32_t>(surroundings_.log->pluginLevel()),
                          KEST_LOG_HOST | KEST_LOG_DEBUGGER);
  }
  surroundings_.log->SetPrintsPlugin(canSet);
}

bool PluginSession::Start() {
  ApplyLogLevel();  // so that the plugin's lines come as the host wants them from the first on
  const KestHandshakeBlock& block = library_->Block();
  surroundings_.serviceEvents->Resume();
  mustStop_ = true;
  const bool isStarted = block.callbacks->start(block.context, services_.Table());
  if (!isStarted) Stop();
  return isStarted;
}

void PluginSession::Stop() {
  if (!std::exchange(mustStop_, false)) return;
  // An event that is being delivered on the other thread must not meet a plugin that has gone.
  surroundings_.serviceEvents->Pause();
  const KestHandshakeBlock& block = library_->Block();
  block.callbacks->stop(block.context);
  surroundings_.serviceEvents->Pause();
  services_.Close();
}

HttpResponse PluginSession::Request(const HttpRequest& request) {
  HttpResponse response = Call(request);
  surroundings_.observer->OnResponse(request, response);
  return response;
}

HttpResponse PluginSession::ReadAside(const std::string& path) {
  HttpRequest request;
  request.method = "GET";
  request.target = path;
  HttpResponse response = Call(request);
  ++readsAside_;
  if (response.status >= 400) ++readsAsideFailed_;
  return response;
}

HttpResponse PluginSession::Call(const HttpRequest& request) {
  const KestHandshakeBlock& block = library_->Block();
  // Ordinary headers stay here: the plugin takes header pairs for arguments of its functions. What
  // the client accepts has a place of its own.
  const KestRequest asked = {
      ToText(request.method), ToText(request.target), nullptr, 0, ToText(request.contentType),
      ToBytes(request.body),  ToText(request.accept)};
  return TakeResponse(block.api->request(block.context, &asked));
}

HttpResponse PluginSession::Invoke(std::string_view function,
                                   std::span<const KestValue> arguments) {
  const KestHandshakeBlock& block = library_->Block();
  return TakeResponse(
      block.api->invoke(block.context, ToText(function), arguments.data(), arguments.size()));
}

HttpResponse PluginSession::Explain(std::string_view question) {
  const KestHandshakeBlock& block = library_->Block();
  if (!KestCanExplain(block.api)) {
    return ProblemResponse(501, "The plugin is older than explanations.");
  }
  HttpResponse response = TakeResponse(block.api->explain(block.context, ToText(question)));
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
  HttpResponse response = ToResponse(owned->status, ToView(owned->message),
                                     ToView(owned->contentType), ToView(owned->body));
  response.variesByAccept = response.status == 200;
  return response;
}

void PluginSession::SignInAtStart(bool byDefault) {
  world_->SignInAtStart(byDefault);
  FinishWorldChange();
}

Maybe<World::Change> PluginSession::AdoptWorld(const WorldText& file, const WorldReading& reading) {
  auto change = world_->Adopt(file, reading);
  if (change) FinishWorldChange();
  return change;
}

void PluginSession::NoteWorldChange() {
  if (surroundings_.worldChanged) surroundings_.worldChanged(*world_);
}

void PluginSession::FinishWorldChange() {
  services_.DispatchWorldEvents(/*isControl=*/true);
  NoteWorldChange();
}

HttpResponse PluginSession::Control(const HttpRequest& request, std::string_view path) {
  const WorldResponse response = world_->Control(request.method, path, request.body);
  if (request.method != "GET") FinishWorldChange();
  HttpResponse given =
      ToResponse(response.status, response.message, response.contentType, response.body);
  given.allow = response.allow;
  return given;
}

void PluginSession::HandFaultsTo(World& next) const {
  const std::string kept = world_->KeptFaults();
  if (!kept.empty()) next.Control("PUT", "/faults", kept);
}

HttpResponse PluginSession::SiblingPage(std::string_view path) const {
  const WorldResponse response = world_->SiblingPage(path);
  return ToResponse(response.status, response.message, response.contentType, response.body);
}

bool PluginSession::Takes(std::string_view method) const {
  const KestApiDescriptor& api = Api();
  for (size_t i = 0; i < api.endpointCount; ++i) {
    if (MethodName(KestEndpointAt(&api, i)->methodId) == method) return true;
  }
  return false;
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
  Subtract(readsAside_, statistics.requestsHandled);
  Subtract(readsAsideFailed_, statistics.requestsFailed);
  return statistics;
}

}  // namespace Kest::Host
