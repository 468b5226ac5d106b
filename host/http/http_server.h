// The host's HTTP/1.1 server: keep-alive, pipelined requests answered in order, streams.
//
// Threads:  one of its own for all connections; the handlers are called on it and must not block.
// Limits:   connections, head and body sizes as below; what goes beyond is answered with a problem
//           document (503, 431, 413). A connection that runs into a time-out is closed. Nothing
//           grows: one answer or one piece of a stream is held for each connection.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/maybe_type.h"
#include "host/http/http_message.h"

namespace Kest::Host {

struct HttpLimits {
  size_t connections = 256;
  uint32_t headBytes = 64 * 1024;
  uint64_t bodyBytes = uint64_t{64} * 1024 * 1024;
  std::chrono::milliseconds idle{60'000};   // between requests, and for one request to arrive whole
  std::chrono::milliseconds write{30'000};  // without progress of one answer or stream piece
  std::chrono::milliseconds comment{15'000};  // a silent stream gets a keep-alive comment
};

struct HttpHandlers {
  // Looks at the head of a request before its body is read; an answer ends the connection.
  std::function<std::optional<HttpAnswer>(const HttpRequest&)> refuse;
  std::function<void(HttpRequest, Respond)> handle;
};

class HttpServer {
 public:
  // Listens on `address` and `port` (0: any free one) without serving yet. The failure names both.
  static Maybe<std::unique_ptr<HttpServer>> Listen(const std::string& address, uint16_t port,
                                                   HttpLimits limits);
  // Ends all connections. Answers that come later are dropped; whoever may still give one must be
  // gone before the server is destroyed.
  ~HttpServer();
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  uint16_t Port() const;

  // Starts the thread. Called once.
  void Serve(HttpHandlers handlers);
  // [any thread] The streams may have something new.
  void WakeStreams();
  // [any thread] Accepts no more connections and closes each after the answer it waits for.
  // Returns when all are gone or after `limit`. Called once.
  void Finish(std::chrono::milliseconds limit);

 private:
  class Impl;
  explicit HttpServer(std::unique_ptr<Impl> impl);

  std::unique_ptr<Impl> impl_;
};

}  // namespace Kest::Host
