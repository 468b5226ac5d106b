#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

#include "host/session/standard_error_mute.h"

namespace Kest::Host {

StandardErrorMute::StandardErrorMute() : saved_(dup(STDERR_FILENO)) {
  const int nothing = open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (nothing < 0) return;
  std::fflush(stderr);
  dup2(nothing, STDERR_FILENO);
  close(nothing);
}

StandardErrorMute::~StandardErrorMute() {
  if (saved_ < 0) return;
  std::fflush(stderr);
  dup2(saved_, STDERR_FILENO);
  close(saved_);
}

}  // namespace Kest::Host
