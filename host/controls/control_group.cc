#include "host/controls/control_group.h"

#include "host/http/http_responses.h"

namespace Kest::Host {

HttpResponse ControlResponse(const Maybe<Json>& result) {
  if (result) return JsonResponse(WriteJson(result.GetValue()));
  return ProblemResponse(result.GetFailure().status, result.GetFailure().text);
}

}  // namespace Kest::Host
