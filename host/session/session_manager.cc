#include "host/session/session_manager.h"

#include <utility>

namespace Kest::Host {

SessionManager::SessionManager(std::string libraryPath, MakeWorld makeWorld,
                               PluginSession::Surroundings surroundings)
    : libraryPath_(std::move(libraryPath)),
      makeWorld_(std::move(makeWorld)),
      surroundings_(surroundings) {}

Maybe<Nothing> SessionManager::Start() {
  BeginChange();
  auto result = OpenSession();
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
  CloseSession();
  auto result = OpenSession();
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

Maybe<Nothing> SessionManager::OpenSession() {
  auto world = makeWorld_();
  if (!world) return world.GetFailure();
  auto session = PluginSession::Open(libraryPath_, std::move(world.GetValue()), surroundings_);
  if (!session) return session.GetFailure();
  session_ = std::move(session.GetValue());
  if (session_->Start()) return Nothing{};
  session_.reset();
  return Failure{"The plugin " + libraryPath_ + " did not start."};
}

void SessionManager::CloseSession() {
  if (session_) session_->Stop();
  session_.reset();
}

}  // namespace Kest::Host
