#include "host/session/session_manager.h"

#include <utility>

#include "host/cause/cause.h"

namespace Kest::Host {

SessionManager::SessionManager(std::string libraryPath, MakeWorld makeWorld, bool signsIn,
                               PluginSession::Surroundings surroundings)
    : libraryPath_(std::move(libraryPath)),
      makeWorld_(std::move(makeWorld)),
      signsIn_(signsIn),
      surroundings_(surroundings) {}

Maybe<Nothing> SessionManager::Start() {
  BeginChange();
  auto world = makeWorld_();
  Maybe<Nothing> result =
      world ? OpenSession(std::move(world.GetValue())) : Maybe<Nothing>(world.GetFailure());
  changing_ = false;
  return result;
}

void SessionManager::Stop() {
  BeginChange();
  CloseSession();
  changing_ = false;
}

Maybe<Nothing> SessionManager::Reset() {
  BeginChange();
  auto world = makeWorld_();
  Maybe<Nothing> result = Nothing{};
  if (world) {
    if (session_) session_->HandFaultsTo(*world.GetValue());
    CloseSession();
    surroundings_.stream->AppendReset();
    result = OpenSession(std::move(world.GetValue()));
  } else {
    result = world.GetFailure();
  }
  changing_ = false;
  return result;
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

Maybe<Nothing> SessionManager::OpenSession(std::unique_ptr<World> world) {
  const CauseScope scope(
      surroundings_.traffic->Rows().Add({.kind = RowKind::kSession, .name = "start"}));
  auto session = PluginSession::Open(libraryPath_, std::move(world), surroundings_);
  if (!session) return session.GetFailure();
  session_ = std::move(session.GetValue());
  if (!session_->Start()) {
    session_.reset();
    return Failure{"The plugin " + libraryPath_ + " did not start."};
  }
  if (signsIn_) {
    HttpRequest signIn;
    signIn.method = "POST";
    session_->Control(signIn, "/login");
  }
  return Nothing{};
}

void SessionManager::CloseSession() {
  if (session_) {
    const CauseScope scope(
        surroundings_.traffic->Rows().Add({.kind = RowKind::kSession, .name = "stop"}));
    session_->Stop();
  }
  session_.reset();
}

}  // namespace Kest::Host
