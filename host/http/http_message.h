// What the HTTP server and its handlers exchange, free of any HTTP library.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Kest::Host {

struct HttpRequest {
  std::string method;       // as sent: "GET"
  std::string target;       // raw path and query: "/tav-loot/v1/player-loot?x=1"
  std::string host;         // the Host header; empty when there is none
  std::string origin;       // the Origin header; empty when there is none
  std::string asksFor;      // Access-Control-Request-Method: what a page's preflight asks for
  std::string contentType;  // of `body`
  std::string accept;       // the Accept headers, as one list
  std::string lastEventId;  // the Last-Event-ID header
  std::string ifNoneMatch;  // the If-None-Match headers, as one list
  std::string body;
  bool isReserved = false;  // came on a connection that is kept for controls
};

// Text that is sent piece by piece until the reader goes away. Used on the server's thread only.
class HttpStream {
 public:
  virtual ~HttpStream() = default;
  // What is ready now, a bounded amount; empty when there is nothing yet.
  virtual std::string Next() = 0;
};

struct HttpResponse {
  int status = 200;
  std::string contentType;  // empty without a body
  std::string body;
  std::string allow = {};                                         // the methods a 405 names
  std::vector<std::pair<std::string, std::string>> headers = {};  // names with values
  bool variesByAccept = false;                   // what was accepted decided about the body
  std::string entityTag = {};                    // with its quotes; without one it is not kept
  std::unique_ptr<HttpStream> stream = nullptr;  // instead of `body`
};

// Gives the one response to one request. Any thread, exactly once.
using Respond = std::function<void(HttpResponse)>;

struct HttpHandlers {
  // Looks at the head of a request before its body is read; a response ends the connection.
  std::function<std::optional<HttpResponse>(const HttpRequest&)> refuse;
  std::function<void(HttpRequest, Respond)> handle;
  // Whether the page that sent a request may read the response. Without it none may.
  std::function<bool(const HttpRequest&)> letsPageRead = {};
};

}  // namespace Kest::Host
