// The files of the browser console, part of the program. A program that was built without the
// console has a page that says so, and nothing else.
//
// Threads: any.
#pragma once

#include <string_view>

#include "host/http/http_message.h"

namespace Kest::Host {

extern const std::string_view kConsolePage;
extern const std::string_view kConsoleScript;
extern const std::string_view kConsoleStyle;
extern const std::string_view kConsoleIcon;

// The console itself, as `request` asks for it: a browser that has it already gets 304.
HttpResponse ConsolePage(const HttpRequest& request);
// A file that the page names, likewise, or 404.
HttpResponse ConsoleFile(std::string_view name, const HttpRequest& request);

}  // namespace Kest::Host
