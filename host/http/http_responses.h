// The responses the host makes itself: JSON bodies and problem documents.
#pragma once

#include <string>
#include <string_view>

#include "host/http/http_message.h"

namespace Kest::Host {

// The reason phrase of a status code, "Error" for one that has none here.
std::string_view ReasonPhrase(int status);

HttpResponse JsonResponse(std::string json);

// An "application/problem+json" document with `status`, `title` (the reason phrase) and `detail`.
HttpResponse ProblemResponse(int status, std::string_view detail);

// The 503 of what comes when all connections are taken.
HttpResponse TooManyConnections();

// A 405 that names the methods which are allowed: "GET, POST".
HttpResponse MethodProblem(std::string_view allowed);

}  // namespace Kest::Host
