// Takes standard error from the whole process, from the plugin too, for as long as it lives.
//
// Threads: made and destroyed while no other thread writes there.
#pragma once

namespace Kest::Host {

class StandardErrorMute {
 public:
  StandardErrorMute();
  ~StandardErrorMute();
  StandardErrorMute(const StandardErrorMute&) = delete;
  StandardErrorMute& operator=(const StandardErrorMute&) = delete;

 private:
  int saved_;  // leads where it led; -1: there was none
};

}  // namespace Kest::Host
