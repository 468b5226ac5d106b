#include "host/openapi/control_description.h"

namespace Kest::Host {

const std::vector<ControlDescription>& AllControls() {
  static const std::vector<ControlDescription> controls = [] {
    std::vector<ControlDescription> list;
    const Json document = ParseJson(kControlsText);
    for (const Json& control : document["controls"]) {
      list.push_back({control["method"], control["path"], control["operationId"],
                      control["summary"], control.value("parameters", Json::object()),
                      control.value("body", Json()), control["response"]});
    }
    return list;
  }();
  return controls;
}

}  // namespace Kest::Host
