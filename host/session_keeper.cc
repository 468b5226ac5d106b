#include "host/session_keeper.h"

#include <utility>

namespace Kest::Host {

SessionKeeper::SessionKeeper(std::string libraryPath, MakeWorld makeWorld,
                             PluginSession::Surroundings surroundings)
    : libraryPath_(std::move(libraryPath)),
      makeWorld_(std::move(makeWorld)),
      surroundings_(surroundings) {}

Maybe<Nothing> SessionKeeper::Start() {
  BeginChange();
  auto result = OpenSession();
  changing_ = false;
  return result;
}

void SessionKeeper::Stop() {
  BeginChange();
  CloseSession();
  changing_ = false;
}

Maybe<Nothing> SessionKeeper::Reset() {
  BeginChange();
  CloseSession();
  auto result = OpenSession();
  changing_ = false;
  return result;
}

PluginSession* SessionKeeper::Current() {
  while (changing_) surroundings_.scheduler->Yield();
  return session_.get();
}

void SessionKeeper::DeliverServiceEvent(const ServiceEvents::Event& event) {
  session_->Services().DeliverServiceEvent(event);
}

void SessionKeeper::BeginChange() {
  while (changing_) surroundings_.scheduler->Yield();
  changing_ = true;
}

Maybe<Nothing> SessionKeeper::OpenSession() {
  auto world = makeWorld_();
  if (!world) return world.GetFailure();
  auto session = PluginSession::Open(libraryPath_, std::move(world.GetValue()), surroundings_);
  if (!session) return session.GetFailure();
  session_ = std::move(session.GetValue());
  if (session_->Start()) return Nothing{};
  session_.reset();
  return Failure{"The plugin " + libraryPath_ + " did not start."};
}

void SessionKeeper::CloseSession() {
  if (session_) session_->Stop();
  session_.reset();
}

}  // namespace Kest::Host
