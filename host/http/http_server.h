// The host's HTTP/1.1 server: keep-alive, pipelined requests with responses in order, streams.
//
// Threads:  one of its own for all connections; the handlers are called on it and must not block.
// Limits:   those of http_limits.h; what exceeds a size gets a problem
//           document (503, 431, 413). A connection that runs into a time-out is closed. Nothing
//           grows: one response or one piece of a stream is held for each connection.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "base/maybe_type.h"
#include "host/http/http_limits.h"
#include "host/http/http_message.h"

namespace Kest::Host {

class HttpServer {
 public:
  // Listens on `address` and `port` (0: any free one) without serving yet. The failure names both.
  static Maybe<std::unique_ptr<HttpServer>> Listen(const std::string& address, uint16_t port,
                                                   HttpLimits limits);
  // Ends all connections. Later responses are dropped; what may still give one must be
  // gone before the server is destroyed.
  virtual ~HttpServer() = default;
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  virtual uint16_t Port() const = 0;

  // Starts the thread. Called once.
  virtual void Serve(HttpHandlers handlers) = 0;
  // [any thread] The streams may have something new.
  virtual void WakeStreams() = 0;
  // [any thread] Accepts no more connections and closes each after the response it waits for.
  // Returns when all are gone or after `limit`. Called once.
  virtual void Finish(std::chrono::milliseconds limit) = 0;

 protected:
  HttpServer() = default;
};

}  // namespace Kest::Host
