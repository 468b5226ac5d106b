#include "host/session/session_manager.h"

#include <optional>
#include <string_view>
#include <utility>

#include "host/cause/cause.h"

namespace Kest::Host {
namespace {

std::string Replaced(std::string text, std::string_view part, std::string_view other) {
  for (size_t at = text.find(part); at != text.npos; at = text.find(part, at + other.size())) {
    text.replace(at, part.size(), other);
  }
  return text;
}

}  // namespace

SessionManager::SessionManager(std::string libraryPath, bool signsIn,
                               PluginSession::Surroundings surroundings)
    : builtPath_(libraryPath),
      libraryPath_(std::move(libraryPath)),
      signsIn_(signsIn),
      surroundings_(std::move(surroundings)) {}

Maybe<Nothing> SessionManager::Begin(std::unique_ptr<World> world) {
  BeginChange();
  if (session_) session_->HandFaultsTo(*world);
  if (CloseSession() != nullptr) surroundings_.stream->AppendReset();
  // The library is closed before it is opened again: what it keeps in itself must go as well.
  auto library = Open(libraryPath_);
  Maybe<Nothing> result = library ? OpenSession(std::move(library.GetValue()), std::move(world))
                                  : Maybe<Nothing>(library.GetFailure());
  changing_ = false;
  return result;
}

Maybe<Nothing> SessionManager::BeginAgain(const std::string& libraryPath) {
  BeginChange();
  Maybe<Nothing> result = Failure{"There is no session.", 503};
  if (session_) {
    const bool isOther = libraryPath != libraryPath_;
    std::unique_ptr<World> world;
    if (!isOther) world = CloseSession();
    auto library = Open(libraryPath);
    if (library) {
      if (isOther) world = CloseSession();
      libraryPath_ = libraryPath;
      surroundings_.stream->AppendReset();
      world->BeginAgain();
      result = OpenSession(std::move(library.GetValue()), std::move(world));
    } else {
      result = library.GetFailure();
    }
  }
  changing_ = false;
  return result;
}

void SessionManager::Stop() {
  BeginChange();
  CloseSession();
  changing_ = false;
}

PluginSession* SessionManager::Current() {
  while (changing_) surroundings_.scheduler->Yield();
  return session_.get();
}

void SessionManager::DeliverServiceEvent(const ServiceEventThread::Event& event) {
  session_->Services().DeliverServiceEvent(event);
}

void SessionManager::BeginChange() {
  while (changing_) surroundings_.scheduler->Yield();
  changing_ = true;
}

Maybe<std::unique_ptr<PluginLibrary>> SessionManager::Open(const std::string& libraryPath) {
  std::optional<Maybe<std::unique_ptr<PluginLibrary>>> library;
  surroundings_.log->RunUnprinted(
      [&] { library = PluginLibrary::Open(libraryPath, surroundings_.enter); });
  if (*library || libraryPath == builtPath_) return std::move(*library);
  return Failure{Replaced(library->GetFailure().text, libraryPath, builtPath_)};
}

Maybe<Nothing> SessionManager::OpenSession(std::unique_ptr<PluginLibrary> library,
                                           std::unique_ptr<World> world) {
  const CauseScope scope(
      surroundings_.traffic->Rows().Add({.kind = RowKind::kSession, .name = "start"}));
  session_ = std::make_unique<PluginSession>(std::move(library), std::move(world), surroundings_);
  ++number_;
  surroundings_.observer->OnBegin();
  if (!session_->Start()) {
    session_.reset();
    return Failure{"The plugin " + builtPath_ + " did not start."};
  }
  session_->SignInAtStart(signsIn_);
  return Nothing{};
}

// The world of the session, which has ended; null when there was none.
std::unique_ptr<World> SessionManager::CloseSession() {
  if (!session_) return nullptr;
  const CauseScope scope(
      surroundings_.traffic->Rows().Add({.kind = RowKind::kSession, .name = "stop"}));
  session_->Stop();
  std::unique_ptr<World> world = session_->TakeWorld();
  session_.reset();
  return world;
}

}  // namespace Kest::Host
