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

// The console itself.
HttpResponse ConsolePage();
// A file that the page names, or 404.
HttpResponse ConsoleFile(std::string_view name);

}  // namespace Kest::Host
