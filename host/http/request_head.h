// Reads the fields of a request's head. Included where HTTP's library is.
#pragma once

#include <boost/beast/core/string.hpp>
#include <boost/beast/http/field.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "host/http/http_message.h"
#include "host/http/http_responses.h"

namespace Kest::Host {

using HttpField = boost::beast::http::field;

inline boost::beast::string_view View(std::string_view text) {
  return {text.data(), text.size()};
}

inline std::string Copy(boost::beast::string_view text) {
  return {text.data(), text.size()};
}

template <typename Fields>
std::string FieldOf(const Fields& fields, HttpField name) {
  return Copy(fields[name]);
}

// A list that may be spread over several fields.
template <typename Fields>
std::string ListOf(const Fields& fields, HttpField name) {
  std::string list;
  const auto [first, last] = fields.equal_range(name);
  for (auto field = first; field != last; ++field) {
    if (!list.empty()) list += ", ";
    list += Copy(field->value());
  }
  return list;
}

// The refusal of a head that others may read in another way than this server does.
template <typename Fields>
std::optional<HttpResponse> RefuseAmbiguous(const Fields& head) {
  if (head.count(HttpField::host) > 1 || head.count(HttpField::origin) > 1) {
    return ProblemResponse(400, "A request has one Host header and at most one Origin header.");
  }
  const bool isEncoded = head.count(HttpField::transfer_encoding) != 0;
  if (isEncoded && !boost::beast::iequals(ListOf(head, HttpField::transfer_encoding), "chunked")) {
    return ProblemResponse(501, "Of the transfer encodings only \"chunked\" is read, once.");
  }
  return std::nullopt;
}

// "http://name:port/path" as sent to proxies: its name replaces the Host header.
inline void SplitAbsoluteTarget(HttpRequest* request) {
  constexpr std::string_view kScheme = "http://";
  if (!request->target.starts_with(kScheme)) return;
  const size_t path = request->target.find('/', kScheme.size());
  const size_t nameEnd = path == std::string::npos ? request->target.size() : path;
  request->host = request->target.substr(kScheme.size(), nameEnd - kScheme.size());
  request->target = path == std::string::npos ? "/" : request->target.substr(path);
}

}  // namespace Kest::Host
