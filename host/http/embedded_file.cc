#include "host/http/embedded_file.h"

#include <string>

namespace Kest::Host {
namespace {

constexpr std::string_view kPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; connect-src 'self'; "
    "base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

}  // namespace

HttpResponse EmbeddedFile(std::string_view contentType, std::string_view bytes) {
  HttpResponse response;
  response.contentType = contentType;
  response.body = bytes;
  response.headers = {{"Content-Security-Policy", std::string(kPolicy)},
                      {"Referrer-Policy", "no-referrer"}};
  return response;
}

}  // namespace Kest::Host
