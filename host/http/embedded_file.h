// Files that are part of the program and that a browser shows.
#pragma once

#include <string_view>

#include "host/http/http_message.h"

namespace Kest::Host {

// The file, as a page that takes everything from this host and sends everything to it: what names
// and strings hold can never become code.
HttpResponse EmbeddedFile(std::string_view contentType, std::string_view bytes);

}  // namespace Kest::Host
