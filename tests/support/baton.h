// What passes between two threads of which one runs at a time: whoever holds it runs.
// Threads: the two of them.
#pragma once

#include <memory>

namespace Kest::Testing {

class Baton {
 public:
  Baton();  // the pump holds it
  ~Baton();
  Baton(const Baton&) = delete;
  Baton& operator=(const Baton&) = delete;

  void Give(bool toTask);
  void Await(bool byTask);

 private:
  struct State;
  const std::unique_ptr<State> state_;
};

}  // namespace Kest::Testing
