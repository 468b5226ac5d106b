#include "host/record/turn.h"

namespace Kest::Host {

bool Turn::Take() {
  const std::thread::id self = std::this_thread::get_id();
  const MutexLock lock(mutex_);
  if (owner_ == self) return false;
  while (owner_ != std::thread::id()) given_.Wait(mutex_);
  owner_ = self;
  return true;
}

void Turn::Give() {
  {
    const MutexLock lock(mutex_);
    owner_ = std::thread::id();
  }
  given_.NotifyAll();
}

}  // namespace Kest::Host
