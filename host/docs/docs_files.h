// The documentation as pages, part of the program. A program that was built without them has one
// that says so.
//
// Threads: any.
#pragma once

#include <string_view>

#include "host/http/http_message.h"

namespace Kest::Host {

// As script/build-docs makes it: a line "<bytes> <name>" for each file, an empty line, and the
// files one after the other.
extern const std::string_view kDocsBundle;

// Leads to the first page, from where the names in pages are right.
HttpResponse DocsIndex();
// A file, or 404.
HttpResponse DocsFile(std::string_view name);

}  // namespace Kest::Host
