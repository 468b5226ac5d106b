// The controls that describe the plugin's API: "/_host/help" and "/_host/openapi.json".
#pragma once

#include "host/controls/control_group.h"
#include "host/session/session_manager.h"

namespace Kest::Host {

// Help is what the plugin's Help returns, in the form that the query asks for, or in its default
// form. A string is served as "text/plain; charset=utf-8", everything else as it comes. A format
// the plugin does not know is refused in its own words.
//
// The OpenAPI document is that of the plugin and this host. A plugin without a Help gives no
// document: its own refusal is the response, and 500 when its Help cannot be read.
//
// `sessions` outlives the controls.
ControlGroup DescriptionControls(SessionManager* sessions);

}  // namespace Kest::Host
