// The pages that describe the plugin's API: "/_host/help" and "/_host/openapi.json".
//
// Threads: [task] on the scheduler's tasks.
#pragma once

#include <string_view>

#include "host/http/http_message.h"
#include "host/session/plugin_session.h"

namespace Kest::Host {

// What the plugin's Help returns, in the form that `query` asks for ("format=Epytext"), or in its
// default form. A string is served as "text/plain; charset=utf-8", everything else as it comes. A
// format the plugin does not know is refused in its own words.
HttpResponse HelpPage(PluginSession& session, std::string_view query);

// The OpenAPI document of the plugin and this host. A plugin without a Help gives no document: its
// own refusal is the response, and 500 when its Help cannot be read.
HttpResponse OpenApiPage(PluginSession& session);

}  // namespace Kest::Host
