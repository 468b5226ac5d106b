#include "api/response.h"

#include "api/http_names.h"

namespace Kest {
namespace {

Response FailureOf(int32_t status, std::string_view message, std::string_view whenEmpty) {
  Response response;
  response.status = status;
  response.message = message.empty() ? whenEmpty : message;
  return response;
}

}  // namespace

Response NotFound(std::string_view message) {
  return FailureOf(kStatusNotFound, message, "Not found");
}

Response InternalServerError(std::string_view message) {
  return FailureOf(kStatusServerError, message, "Internal server error");
}

Response FailureResponse(const Failure& failure) {
  const int32_t status = failure.status;
  if (status == kStatusNotFound) return NotFound(failure.text);
  const bool isFailure = status >= kStatusBadRequest && status < 600;
  if (!isFailure || status == kStatusServerError) return InternalServerError(failure.text);
  return FailureOf(status, failure.text, StatusText(status));
}

}  // namespace Kest
