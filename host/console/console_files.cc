#include "host/console/console_files.h"

#include <string>

#include "host/http/embedded_file.h"
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

HttpResponse ConsolePage() {
  HttpResponse response = EmbeddedFile("text/html; charset=utf-8", kConsolePage);
  response.variesByAccept = true;
  return response;
}

HttpResponse ConsoleFile(std::string_view name) {
  for (const File& file : kFiles) {
    if (file.name == name && !file.text->empty()) {
      return EmbeddedFile(file.contentType, *file.text);
    }
  }
  return ProblemResponse(404, "The console has no file " + std::string(name) + ".");
}

}  // namespace Kest::Host
