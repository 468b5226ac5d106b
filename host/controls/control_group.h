// The host's own controls, in groups of rows. A row is found by the operation id that its
// description has (host/openapi/controls.json), which also says its method, path, query and body.
//
// Threads: [task] on the scheduler's tasks; those that return a stream on any thread.
#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "base/maybe_type.h"
#include "host/http/http_message.h"
#include "host/openapi/control_lookup.h"
#include "host/url/request_target.h"
#include "host/world/input/document.h"

namespace Kest::Host {

struct HostCall {
  const HttpRequest& request;
  RequestTarget target;  // its parameters have names that the description knows
  PathArguments path;    // "id": "7"
  Document body;         // an empty object when there was none, or the control takes none
};

struct HostControlRow {
  std::string_view operationId;
  std::function<HttpResponse(const HostCall& call)> call;
};

using ControlGroup = std::vector<HostControlRow>;

// 200 with the value, or the problem that the failure describes.
HttpResponse ControlResponse(const Maybe<Json>& result);

}  // namespace Kest::Host
