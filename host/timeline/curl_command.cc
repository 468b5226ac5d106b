#include "host/timeline/curl_command.h"

#include <algorithm>
#include <string_view>

#include "base/utf8.h"

namespace Kest::Host {
namespace {

std::string Quoted(std::string_view text) {
  std::string quoted = "'";
  for (const char c : text) {
    if (c == '\'') {
      quoted += "'\\''";
    } else {
      quoted += c;
    }
  }
  return quoted += '\'';
}

bool IsPrintable(std::string_view text) {
  const auto isControl = [](unsigned char c) { return (c < ' ' && c != '\n') || c == 127; };
  return IsValidUtf8(text) && std::none_of(text.begin(), text.end(), isControl);
}

// For printf: every byte as an octal escape.
std::string Octal(std::string_view bytes) {
  std::string text;
  for (const unsigned char c : bytes) {
    text += '\\';
    for (const int shift : {6, 3, 0}) text += static_cast<char>('0' + (c >> shift & 7));
  }
  return text;
}

}  // namespace

std::string CurlCommand(const TimelineRow& request) {
  std::string command = "curl";
  if (request.method == "HEAD") {
    command += " -I";
  } else if (request.method != "GET" || request.size > 0) {
    command += " -X " + request.method;
  }
  if (request.name.find_first_of("[]{}") != std::string::npos) command += " -g";
  command += " " + Quoted("http://" + request.host + request.name);
  if (!request.accept.empty()) command += " -H " + Quoted("Accept: " + request.accept);
  if (request.size == 0) return command;
  command += " -H " + Quoted("Content-Type: " + request.payloadType);
  if (request.isShortened) return command + " --data-binary @body";
  if (IsPrintable(request.payload)) return command + " --data-raw " + Quoted(request.payload);
  return "printf " + Quoted(Octal(request.payload)) + " | " + command + " --data-binary @-";
}

}  // namespace Kest::Host
