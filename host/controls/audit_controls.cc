#include "host/controls/audit_controls.h"

#include <algorithm>
#include <string>

#include "host/http/http_responses.h"
#include "host/world/input/field_reader.h"

namespace Kest::Host {
namespace {

Maybe<Json> SetAudit(Auditor* auditor, const HostCall& call) {
  FieldReader fields(call.body);
  const std::string word = fields.String("mode");
  const auto* const mode = std::find(kAuditModes.begin(), kAuditModes.end(), word);
  if (mode == kAuditModes.end()) {
    fields.FailAt("mode",
                  "\"mode\" must be \"off\", \"on\" or \"strict\", found " + WriteJson(word));
  }
  if (!fields.Finish()) return fields.failure();
  auditor->SetMode(static_cast<AuditMode>(mode - kAuditModes.begin()));
  return auditor->Report();
}

}  // namespace

ControlGroup AuditControls(Auditor* auditor) {
  return {
      {"GetAudit",
       [auditor](const HostCall&) { return JsonResponse(WriteJson(auditor->Report())); }},
      {"SetAudit",
       [auditor](const HostCall& call) { return ControlResponse(SetAudit(auditor, call)); }},
  };
}

}  // namespace Kest::Host
