// The request to end the program: SIGINT or SIGTERM; on Windows Ctrl-C or Ctrl-Break.
#pragma once

#include <memory>

namespace Kest::Host {

class StopSignal {
 public:
  // From here on the signals no longer end the process by themselves.
  StopSignal();
  ~StopSignal();

  // Returns when one has come. From then on a second one ends the process at once.
  void Wait();

 private:
  struct State;
  const std::unique_ptr<State> state_;
};

}  // namespace Kest::Host
