// One call of a platform service's method: its name, its arguments, and the body posted for it.
// Threads: one owner at a time.
#pragma once

#include <string>
#include <string_view>

#include "binding/convert/convert.h"
#include "binding/tree/binding_property.h"
#include "binding/types/static_type.h"

namespace Kest::Client {

inline constexpr std::string_view kSessionInvokePath = "/tav-login/v1/session/invoke";
inline constexpr std::string_view kUuidRequestsPath = "/tav-login/v1/service-proxy-uuid-requests";
inline constexpr std::string_view kMethodRequestsPath =
    "/tav-login/v1/service-proxy-method-requests";

// Borrows its strings; use it within one call.
struct ServiceCall {
  std::string_view service;
  std::string_view method;
  std::string_view requestKey;  // empty: keyed by a uuid of the host
  bool flag = false;            // passed on with method-based requests

  // "loot.redeemPlayerLoot": names the call in log lines and keys method-based requests.
  std::string Key() const;
};

std::string ServiceCallKey(std::string_view service, std::string_view method);

// The list of a call's arguments, in order.
class CallArguments {
 public:
  template <class... A>
  explicit CallArguments(const A&... arguments) {
    (Add(arguments), ...);
  }

  // True while every argument has converted. Otherwise `FailedType` names the first one's type and
  // `ErrorMessage` is the reason.
  bool Ok() const { return context_.Ok(); }
  std::string ErrorMessage() const { return context_.ErrorMessage(); }
  const std::string& FailedType() const { return failedType_; }

  // {"serviceName", "methodName", "args"}, for method-based requests also "requestKey" and "flag".
  BindingProperty MakeBody(const ServiceCall& call) const;

 private:
  template <class A>
  void Add(const A& argument) {
    if (!context_.Ok()) return;
    const BindingProperty value = ToProperty(context_, argument);
    if (context_.Ok()) {
      Append(value);
    } else {
      failedType_ = StaticType::Name<A>();
    }
  }
  void Append(const BindingProperty& value);

  ConversionContext context_;
  BindingProperty list_ = BindingProperty::Collection();
  std::string failedType_;
};

}  // namespace Kest::Client
