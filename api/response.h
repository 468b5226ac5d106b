// The response to a request or invocation.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/maybe_type.h"
#include "base/shared_text.h"

namespace Kest {

// A success carries a body (200) or none (204), a failure its status and message and never a body.
struct Response {
  int32_t status = 200;
  std::string message;      // of a failure; empty for a success
  std::string contentType;  // of the body; empty without one
  std::string body;
  SharedText sharedBody{};  // unless it is empty, the body

  std::string_view Body() const { return sharedBody.text.empty() ? body : sharedBody.text; }

  friend bool operator==(const Response& a, const Response& b) {
    return a.status == b.status && a.message == b.message && a.contentType == b.contentType &&
           a.Body() == b.Body();
  }
};

// 404 with `message`, or with "Not found" when that is empty.
Response NotFound(std::string_view message = {});

// 500 with `message`, or with "Internal server error" when that is empty.
Response InternalServerError(std::string_view message = {});

// The failure's status and message. Without a message it becomes NotFound() for 404 and otherwise
// InternalServerError() with any status; a status outside 400 to 599 becomes 500.
Response FailureResponse(const Failure& failure);

}  // namespace Kest
