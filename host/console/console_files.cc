#include "host/console/console_files.h"

#include <string>

#include "host/http/embedded_file.h"
#include "host/http/entity_tag.h"
#include "host/http/http_responses.h"

namespace Kest::Host {
namespace {

struct File {
  std::string_view name;
  std::string_view contentType;
  const std::string_view* text;
};

constexpr File kFiles[] = {
    {"console.js", "text/javascript; charset=utf-8", &kConsoleScript},
    {"console.css", "text/css; charset=utf-8", &kConsoleStyle},
    {"icon.svg", "image/svg+xml", &kConsoleIcon},
};

}  // namespace

HttpResponse ConsolePage(const HttpRequest& request) {
  HttpResponse response = EmbeddedFile("text/html; charset=utf-8", kConsolePage);
  response.variesByAccept = true;
  ApplyEntityTag(request, &response);
  return response;
}

HttpResponse ConsoleFile(std::string_view name, const HttpRequest& request) {
  for (const File& file : kFiles) {
    if (file.name != name || file.text->empty()) continue;
    HttpResponse response = EmbeddedFile(file.contentType, *file.text);
    ApplyEntityTag(request, &response);
    return response;
  }
  return ProblemResponse(404, "The console has no file " + std::string(name) + ".");
}

}  // namespace Kest::Host
