// OutgoingRequest builds one request to another plugin: its url with the query, its body, and the
// failure messages that name it.
// Threads: one owner at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "api/http_names.h"
#include "base/maybe_type.h"
#include "binding/convert/convert.h"
#include "binding/json/json_adapter.h"

namespace Kest::Client {

// An argument that travels in the url's query. It borrows both; use it within one expression.
template <class T>
struct Query {
  Query(std::string_view argumentName, const T& argument) : name(argumentName), value(argument) {}

  std::string_view name;
  const T& value;
};

template <class T>
inline constexpr bool IsQuery = false;
template <class T>
inline constexpr bool IsQuery<Query<T>> = true;

// Where a request can fail; each step has its own message.
enum class RequestStep : size_t { kArguments, kResponse, kBody, kConversion };

class OutgoingRequest {
 public:
  OutgoingRequest(HttpMethod method, std::string_view url)
      : method_(method), url_(url), target_(url) {}

  // Once an argument has not converted, the rest is ignored.
  template <class T>
  void Add(const Query<T>& argument) {
    if (!context_.Ok()) return;
    const BindingProperty value = ToProperty(context_, argument.value);
    if (context_.Ok()) AddQuery(argument.name, value);
  }
  template <class T>
  void Add(const T& body) {
    if (!context_.Ok()) return;
    WriteJsonValue(context_, body, &body_);
    hasBody_ = true;
  }

  bool ArgumentsConverted() const { return context_.Ok(); }
  // REQUIRES: an argument has not converted.
  Failure ArgumentFailure() const;
  Failure Fail(RequestStep step, std::string_view error, int32_t status = 500) const;

  HttpMethod Method() const { return method_; }
  std::string_view Target() const { return target_; }  // url with the query
  std::string_view Body() const { return body_; }
  bool HasBody() const { return hasBody_; }

 private:
  void AddQuery(std::string_view name, const BindingProperty& value);

  HttpMethod method_;
  std::string url_;
  std::string target_;
  std::string body_;
  bool hasBody_ = false;
  ConversionContext context_;
};

}  // namespace Kest::Client
