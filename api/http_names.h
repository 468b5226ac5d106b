// The names of HTTP that the plugin uses: methods, reason phrases, content types.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Kest {

// The numbers cross to the host: never renumber.
enum class HttpMethod : int32_t {
  kNone = 0,
  kDelete = 1,
  kGet = 2,
  kHead = 3,
  kOptions = 4,
  kPatch = 5,
  kPost = 6,
  kPut = 7,
};
inline constexpr size_t kHttpMethodCount = 8;  // kNone included

// "DELETE" ... "PUT"; empty for a method outside kDelete to kPut.
std::string_view MethodName(HttpMethod method);

// The method of an upper-case name, kNone for any other.
HttpMethod ParseMethod(std::string_view name);

// Status codes that the dispatcher itself responds with.
inline constexpr int32_t kStatusOk = 200;
inline constexpr int32_t kStatusNoContent = 204;
inline constexpr int32_t kStatusBadRequest = 400;
inline constexpr int32_t kStatusNotFound = 404;
inline constexpr int32_t kStatusTooLarge = 413;
inline constexpr int32_t kStatusServerError = 500;

// The reason phrase of a status code ("Not Found"); empty for a code without one.
std::string_view StatusText(int32_t status);

inline constexpr std::string_view kContentTypeJson = "application/json";
inline constexpr std::string_view kContentTypeJsonApi = "application/vnd.api+json";
inline constexpr std::string_view kContentTypeYamlBody = "application/x-yaml";
inline constexpr std::string_view kContentTypeYamlValue = "text/x-yaml";
// Also the beginning of "application/x-msgpack-ext", which is read alike.
inline constexpr std::string_view kContentTypeMessagePack = "application/x-msgpack";
inline constexpr std::string_view kContentTypeBytes = "application/octet-stream";

// Whether `contentType` begins with `prefix`, ignoring case: parameters such as a charset after the
// type are ignored.
bool HasContentType(std::string_view contentType, std::string_view prefix);

}  // namespace Kest
