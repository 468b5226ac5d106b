#include "loot/calls/service_call.h"

#include <utility>

namespace Kest::Client::Loot {

std::string ServiceCallKey(std::string_view service, std::string_view method) {
  return std::string(service).append(".").append(method);
}

std::string ServiceCall::Key() const {
  return ServiceCallKey(service, method);
}

void CallArguments::Append(const BindingProperty& value) {
  list_.Append() = value;
}

BindingProperty CallArguments::MakeBody(const ServiceCall& call) const {
  BindingProperty body = BindingProperty::Structure();
  body.TakeMember("serviceName").SetString(call.service);
  body.TakeMember("methodName").SetString(call.method);
  if (!call.requestKey.empty()) {
    body.TakeMember("requestKey").SetString(call.requestKey);
    body.TakeMember("flag").SetBool(call.flag);
  }
  body.TakeMember("args") = list_;
  return body;
}

}  // namespace Kest::Client::Loot
