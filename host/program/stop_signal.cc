#include "host/program/stop_signal.h"

#include <utility>  // Asio of this age needs it ahead

#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/signal_set.hpp>
#include <csignal>
#include <cstdio>
#include <thread>

namespace Kest::Host {

struct StopSignal::State {
  boost::asio::io_context io{1};
#if defined(_WIN32)
  // Ctrl-Break, which is all that a program which started this one in a group of its own can send.
  boost::asio::signal_set signals{io, SIGINT, SIGTERM, SIGBREAK};
#else
  boost::asio::signal_set signals{io, SIGINT, SIGTERM};
#endif
};

StopSignal::StopSignal() : state_(std::make_shared<State>()) {
#if !defined(_WIN32)
  std::signal(SIGPIPE, SIG_IGN);  // a closed standard output is no reason to end
#endif
}

StopSignal::~StopSignal() = default;

// The thread may still read when the program ends; the state it uses stays until then.
void StopSignal::FollowInput() {
  std::thread([state = state_] {
    while (std::getchar() != EOF) {
    }
    boost::asio::post(state->io, [state] { state->signals.cancel(); });
  }).detach();
}

void StopSignal::Raise() {
  boost::asio::post(state_->io, [state = state_] { state->signals.cancel(); });
}

void StopSignal::Wait() {
  state_->signals.async_wait([this](const boost::system::error_code&, int) {
    state_->signals.clear();  // back to what the system does
  });
  state_->io.run();
}

}  // namespace Kest::Host
