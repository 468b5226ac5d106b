#include "api/response.h"

#include "api/http_names.h"

namespace Kest {
namespace {

Response FailureOf(int32_t status, std::string_view message) {
  Response response;
  response.status = status;
  response.message = message;
  return response;
}

}  // namespace

Response NotFound(std::string_view message) {
  return FailureOf(kStatusNotFound, message.empty() ? "Not found" : message);
}

Response InternalServerError(std::string_view message) {
  return FailureOf(kStatusServerError, message.empty() ? "Internal server error" : message);
}

Response FailureResponse(const Failure& failure) {
  const int32_t status = failure.status;
  if (status == kStatusNotFound) return NotFound(failure.text);
  const bool isFailure = status >= kStatusBadRequest && status < 600;
  if (!isFailure || failure.text.empty()) return InternalServerError(failure.text);
  return FailureOf(status, failure.text);
}

}  // namespace Kest
