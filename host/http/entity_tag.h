// Conditional reads: a response to GET or HEAD has a strong entity tag, made from its body, and a
// reader that holds that body already gets 304 in its place.
//
// Threads: any.
#pragma once

#include <string_view>

#include "host/http/http_message.h"

namespace Kest::Host {

// Whether requests of the method change nothing: GET and HEAD.
bool OnlyReads(std::string_view method);

// Does nothing to the response of what does not only read, or that is no 200 with a body.
void ApplyEntityTag(const HttpRequest& request, HttpResponse* response);

}  // namespace Kest::Host
