#include "host/console/console_files.h"

#include <string>

#include "host/http/http_responses.h"

namespace Kest::Host {
namespace {

// The page takes everything from this host and sends everything to it; what a world's names and
// strings hold can never become code.
constexpr std::string_view kPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; connect-src 'self'; "
    "base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

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

HttpResponse FileResponse(std::string_view contentType, std::string_view text) {
  HttpResponse response;
  response.contentType = contentType;
  response.body = text;
  response.headers = {{"Content-Security-Policy", std::string(kPolicy)},
                      {"Referrer-Policy", "no-referrer"}};
  return response;
}

}  // namespace

HttpResponse ConsolePage() {
  HttpResponse response = FileResponse("text/html; charset=utf-8", kConsolePage);
  response.variesByAccept = true;
  return response;
}

HttpResponse ConsoleFile(std::string_view name) {
  for (const File& file : kFiles) {
    if (file.name == name && !file.text->empty()) {
      return FileResponse(file.contentType, *file.text);
    }
  }
  return ProblemResponse(404, "The console has no file " + std::string(name) + ".");
}

}  // namespace Kest::Host
