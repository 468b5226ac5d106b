#include "host/program/run_host.h"

#include <cstdlib>

#include "host/development_host.h"
#include "host/program/command.h"

namespace Kest::Host {

int FailHost(const Failure& failure) {
  const int status = ReportFailure(failure.text);
  if (failure.status == DevelopmentHost::kTooLate) std::_Exit(status);
  return status;
}

}  // namespace Kest::Host
