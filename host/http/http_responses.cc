#include "host/http/http_responses.h"

#include <utility>

#include "host/json/json_text.h"

namespace Kest::Host {
namespace {

struct Phrase {
  int status;
  std::string_view text;
};

constexpr Phrase kPhrases[] = {
    {200, "OK"},
    {201, "Created"},
    {202, "Accepted"},
    {204, "No Content"},
    {304, "Not Modified"},
    {307, "Temporary Redirect"},
    {400, "Bad Request"},
    {401, "Unauthorized"},
    {403, "Forbidden"},
    {404, "Not Found"},
    {405, "Method Not Allowed"},
    {408, "Request Timeout"},
    {409, "Conflict"},
    {410, "Gone"},
    {413, "Payload Too Large"},
    {414, "URI Too Long"},
    {415, "Unsupported Media Type"},
    {422, "Unprocessable Entity"},
    {429, "Too Many Requests"},
    {431, "Request Header Fields Too Large"},
    {500, "Internal Server Error"},
    {501, "Not Implemented"},
    {502, "Bad Gateway"},
    {503, "Service Unavailable"},
    {504, "Gateway Timeout"},
};

}  // namespace

std::string_view ReasonPhrase(int status) {
  for (const Phrase& phrase : kPhrases) {
    if (phrase.status == status) return phrase.text;
  }
  return "Error";
}

HttpResponse JsonResponse(std::string json) {
  return {.status = 200, .contentType = "application/json", .body = std::move(json)};
}

HttpResponse ProblemResponse(int status, std::string_view detail) {
  std::string json = "{\"status\":" + std::to_string(status);
  json += ",\"title\":" + JsonString(ReasonPhrase(status));
  json += ",\"detail\":" + JsonString(detail) + "}";
  return {.status = status, .contentType = "application/problem+json", .body = std::move(json)};
}

HttpResponse TooManyConnections() {
  return ProblemResponse(503, "Too many connections.");
}

HttpResponse MethodProblem(std::string_view allowed) {
  HttpResponse response = ProblemResponse(405, std::string("Allowed here: ").append(allowed));
  response.allow = allowed;
  return response;
}

}  // namespace Kest::Host
