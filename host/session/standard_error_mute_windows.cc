#include <fcntl.h>
#include <io.h>

#include <cstdio>

#include "host/session/standard_error_mute.h"

namespace Kest::Host {
namespace {

constexpr int kStandardError = 2;

}  // namespace

StandardErrorMute::StandardErrorMute() : saved_(_dup(kStandardError)) {
  const int nothing = _open("NUL", _O_WRONLY);
  if (nothing < 0) return;
  std::fflush(stderr);
  _dup2(nothing, kStandardError);
  _close(nothing);
}

StandardErrorMute::~StandardErrorMute() {
  if (saved_ < 0) return;
  std::fflush(stderr);
  _dup2(saved_, kStandardError);
  _close(saved_);
}

}  // namespace Kest::Host
