#include "api/http_names.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "base/ascii.h"

namespace Kest {
namespace {

// Indexed by HttpMethod.
constexpr std::array<std::string_view, kHttpMethodCount> kMethodNames = {
    "", "DELETE", "GET", "HEAD", "OPTIONS", "PATCH", "POST", "PUT"};
static_assert(kMethodNames[static_cast<size_t>(HttpMethod::kPut)] == "PUT");

struct StatusEntry {
  int32_t status;
  std::string_view text;
};

constexpr StatusEntry kStatusTexts[] = {
    {100, "Continue"},
    {101, "Switching Protocols"},
    {102, "Processing"},
    {200, "OK"},
    {201, "Created"},
    {202, "Accepted"},
    {203, "Non-Authoritative Information"},
    {204, "No Content"},
    {205, "Reset Content"},
    {206, "Partial Content"},
    {207, "207 Multi-Status"},  // repeats its number on purpose
    {300, "Multiple Choices"},
    {301, "Moved Permanently"},
    {302, "Found"},
    {303, "See Other"},
    {304, "Not Modified"},
    {305, "Use Proxy"},
    {307, "Temporary Redirect"},
    {400, "Bad Request"},
    {401, "Unauthorized"},
    {402, "Payment Required"},
    {403, "Forbidden"},
    {404, "Not Found"},
    {405, "Method Not Allowed"},
    {406, "Not Acceptable"},
    {407, "Proxy Authentication Required"},
    {408, "Request Timeout"},
    {409, "Conflict"},
    {410, "Gone"},
    {411, "Length Required"},
    {412, "Precondition Failed"},
    {413, "Request Entity Too Large"},
    {414, "Request-URI Too Long"},
    {415, "Unsupported Media Type"},
    {416, "Requested Range Not Satisfiable"},
    {417, "Expectation Failed"},
    {422, "Unprocessable Entity"},
    {423, "Locked"},
    {424, "Failed Dependency"},
    {500, "Internal Server Error"},
    {501, "Not Implemented"},
    {502, "Bad Gateway"},
    {503, "Service Unavailable"},
    {504, "Gateway Timeout"},
    {505, "HTTP Version Not Supported"},
    {507, "Insufficient Storage"},
};
constexpr auto kByStatus = [](const StatusEntry& a, const StatusEntry& b) {
  return a.status < b.status;
};
static_assert(std::is_sorted(std::begin(kStatusTexts), std::end(kStatusTexts), kByStatus));

}  // namespace

std::string_view MethodName(HttpMethod method) {
  const auto index = static_cast<uint32_t>(method);
  return index < kMethodNames.size() ? kMethodNames[index] : std::string_view();
}

HttpMethod ParseMethod(std::string_view name) {
  for (size_t i = 1; i < kMethodNames.size(); ++i) {
    if (kMethodNames[i] == name) return static_cast<HttpMethod>(i);
  }
  return HttpMethod::kNone;
}

std::string_view StatusText(int32_t status) {
  const auto* entry = std::lower_bound(std::begin(kStatusTexts), std::end(kStatusTexts),
                                       StatusEntry{status, {}}, kByStatus);
  const bool found = entry != std::end(kStatusTexts) && entry->status == status;
  return found ? entry->text : std::string_view();
}

bool HasContentType(std::string_view contentType, std::string_view prefix) {
  return EqualIgnoringCase(contentType.substr(0, prefix.size()), prefix);
}

}  // namespace Kest
