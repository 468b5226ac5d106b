// The request to end the program: SIGINT or SIGTERM, on Windows Ctrl-C or Ctrl-Break, and the end
// of standard input for who asks for it.
#pragma once

#include <memory>

namespace Kest::Host {

class StopSignal {
 public:
  // From here on the signals no longer end the process by themselves.
  StopSignal();
  ~StopSignal();

  // The end of standard input is one, too: a program that started this one need not end it.
  void FollowInput();

  // [any thread] Acts as one that has come.
  void Raise();

  // Returns when one has come. From then on a second one ends the process at once.
  void Wait();

 private:
  struct State;
  const std::shared_ptr<State> state_;
};

}  // namespace Kest::Host
