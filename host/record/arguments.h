// Arguments and results of the C interface as JSON, and back. Bytes that are UTF-8 are a string,
// others {"base64": "..."}.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/json/json.h"
#include "plugin/host_interface.h"
#include "plugin/text_view.h"

namespace Kest::Host {

Json BytesJson(std::string_view bytes);
inline Json BytesJson(KestText text) {
  return BytesJson(ToView(text));
}
inline Json BytesJson(KestBytes bytes) {
  return BytesJson(ToView(bytes));
}
Json RequestJson(const KestRequest& request);
// Null for a null response.
Json ResponseJson(const KestResponse* response);
Json ValuesJson(const KestValue* values, size_t count);
Json StatisticsJson(const KestStatistics& statistics);

// Reads the members of one JSON object. After the first that is missing or of another type, Problem
// says which, and that and the following are empty.
class ArgumentReader {
 public:
  explicit ArgumentReader(const Json& arguments) : arguments_(arguments) {}

  std::string Bytes(const char* name);
  template <typename Number = int64_t>
  Number Integer(const char* name) {
    return static_cast<Number>(ReadInteger(name));
  }
  // The elements of a list.
  std::vector<Json> List(const char* name);
  // Empty: all that was read was there.
  const std::string& Problem() const { return problem_; }

 private:
  const Json* Find(const char* name);
  int64_t ReadInteger(const char* name);
  void Miss(const char* name, std::string_view kind);

  const Json& arguments_;
  std::string problem_;
};

// A request or response with the memory that its views point into. Not moved once View was called.
struct OwnedRequest {
  std::string method, url, contentType, body, accept;
  std::vector<std::string> headers;  // name and value by turns
  std::vector<KestHeader> headerViews = {};

  KestRequest View();
};
struct OwnedResponse {
  int32_t status = 0;
  std::string message, contentType, body;

  KestResponse View() const;
};
OwnedRequest ReadRequest(ArgumentReader& reader);
OwnedResponse ReadResponse(ArgumentReader& reader);

}  // namespace Kest::Host
