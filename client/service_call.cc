#include "client/service_call.h"

#include <utility>

namespace Kest::Client {

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
  body.GetOrAddMember("serviceName").SetString(call.service);
  body.GetOrAddMember("methodName").SetString(call.method);
  if (!call.requestKey.empty()) {
    body.GetOrAddMember("requestKey").SetString(call.requestKey);
    body.GetOrAddMember("flag").SetBool(call.flag);
  }
  body.GetOrAddMember("args") = list_;
  return body;
}

}  // namespace Kest::Client
