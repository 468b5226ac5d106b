#include "host/http/http_server.h"

#include <utility>  // Asio of this age needs it ahead

#include <atomic>
#include <boost/asio/buffer.hpp>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/address.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <exception>
#include <future>
#include <string_view>
#include <thread>
#include <unordered_map>
#include <vector>

#include "host/http/http_connection.h"
#include "host/http/http_responses.h"

namespace Kest::Host {
namespace {

namespace net = boost::asio;
using net::ip::tcp;
using Error = boost::system::error_code;

constexpr auto kAcceptRetry = std::chrono::milliseconds(100);

// The whole response to a connection beyond the limit; it never becomes an HttpConnection.
std::string FullText() {
  const HttpResponse response = TooManyConnections();
  return "HTTP/1.1 503 Service Unavailable\r\nConnection: close\r\nContent-Type: " +
         response.contentType + "\r\nContent-Length: " + std::to_string(response.body.size()) +
         "\r\n\r\n" + response.body;
}

class BeastServer final : public HttpServer, public HttpConnectionOwner {
 public:
  explicit BeastServer(HttpLimits limits) : limits_(limits) {}
  ~BeastServer() override;

  Error Open(const std::string& address, uint16_t port);
  uint16_t Port() const override { return port_; }
  void Serve(HttpHandlers handlers) override;
  void WakeStreams() override;
  void Finish(std::chrono::milliseconds limit) override;

  const HttpLimits& Limits() const override { return limits_; }
  const HttpHandlers& Handlers() const override { return handlers_; }
  void Closed(HttpConnection* connection) override;

 private:
  void Run();
  void CloseAbandoned();
  void Accept();
  void OnAccept(Error error, tcp::socket socket);
  std::vector<std::shared_ptr<HttpConnection>> AllConnections() const;

  const HttpLimits limits_;
  HttpHandlers handlers_;
  net::io_context io_{1};
  net::executor_work_guard<net::io_context::executor_type> keepRunning_{io_.get_executor()};
  tcp::acceptor acceptor_{io_};
  uint16_t port_ = 0;
  net::steady_timer acceptPause_{io_};
  std::unordered_map<HttpConnection*, std::shared_ptr<HttpConnection>> connections_;
  std::atomic<bool> wakePosted_ = false;
  std::promise<void> allClosed_;  // set once, when finishing and the last connection is gone
  bool finishing_ = false;
  std::thread thread_;
};

BeastServer::~BeastServer() {
  io_.stop();
  if (thread_.joinable()) thread_.join();
  for (const auto& connection : AllConnections()) connection->Close();
}

Error BeastServer::Open(const std::string& address, uint16_t port) {
  Error error;
  const auto parsed = net::ip::make_address(address == "localhost" ? "127.0.0.1" : address, error);
  if (error) return error;
  const tcp::endpoint endpoint(parsed, port);
  acceptor_.open(endpoint.protocol(), error);
#if !defined(_WIN32)  // there it would let a second process take the port
  if (!error) acceptor_.set_option(tcp::acceptor::reuse_address(true), error);
#endif
  if (!error) acceptor_.bind(endpoint, error);
  if (!error) acceptor_.listen(net::socket_base::max_listen_connections, error);
  if (!error) port_ = acceptor_.local_endpoint(error).port();
  return error;
}

void BeastServer::Serve(HttpHandlers handlers) {
  handlers_ = std::move(handlers);
  Accept();
  thread_ = std::thread([this] { Run(); });
}

// A step that runs out of memory costs its own connection, not the others.
void BeastServer::Run() {
  while (true) {
    try {
      io_.run();
      return;
    } catch (const std::exception&) {
      CloseAbandoned();
    }
  }
}

void BeastServer::CloseAbandoned() {
  std::vector<HttpConnection*> abandoned;
  for (const auto& entry : connections_) {
    if (entry.second->Abandoned()) abandoned.push_back(entry.first);
  }
  for (HttpConnection* connection : abandoned) {
    const auto keep = connection->shared_from_this();
    connection->Close();
  }
}

void BeastServer::Accept() {
  acceptor_.async_accept(
      [this](Error error, tcp::socket socket) { OnAccept(error, std::move(socket)); });
}

void BeastServer::OnAccept(Error error, tcp::socket socket) {
  if (finishing_ || error == net::error::operation_aborted) return;
  if (error) {  // no descriptor left, for example: try again when some may be free
    acceptPause_.expires_after(kAcceptRetry);
    acceptPause_.async_wait([this](Error cancelled) {
      if (!cancelled) Accept();
    });
    return;
  }
  Accept();
  if (connections_.size() < limits_.connections + limits_.reserved) {
    const bool isReserved = connections_.size() >= limits_.connections;
    auto connection = std::make_shared<HttpConnection>(std::move(socket), this, isReserved);
    connections_.emplace(connection.get(), connection);
    connection->Start();
  } else {
    Error ignored;
    socket.non_blocking(true, ignored);
    socket.write_some(net::buffer(FullText()), ignored);
  }
}

void BeastServer::Closed(HttpConnection* connection) {
  connections_.erase(connection);
  if (finishing_ && connections_.empty()) allClosed_.set_value();
}

std::vector<std::shared_ptr<HttpConnection>> BeastServer::AllConnections() const {
  std::vector<std::shared_ptr<HttpConnection>> all;
  for (const auto& entry : connections_) all.push_back(entry.second);
  return all;
}

// One wake on its way stands for all until it runs.
void BeastServer::WakeStreams() {
  if (wakePosted_.exchange(true)) return;
  net::post(io_, [this] {
    wakePosted_ = false;
    for (const auto& connection : AllConnections()) connection->Wake();
  });
}

void BeastServer::Finish(std::chrono::milliseconds limit) {
  if (!thread_.joinable()) return;
  std::future<void> closed = allClosed_.get_future();
  net::post(io_, [this] {
    Error ignored;
    acceptor_.close(ignored);
    acceptPause_.cancel();
    finishing_ = true;
    if (connections_.empty()) return allClosed_.set_value();
    for (const auto& connection : AllConnections()) connection->Finish();
  });
  closed.wait_for(limit);
}

}  // namespace

Maybe<std::unique_ptr<HttpServer>> HttpServer::Listen(const std::string& address, uint16_t port,
                                                      HttpLimits limits) {
  auto server = std::make_unique<BeastServer>(limits);
  if (const Error error = server->Open(address, port)) {
    return Failure{"Cannot listen on " + address + ":" + std::to_string(port) + ": " +
                   error.message()};
  }
  return std::unique_ptr<HttpServer>(std::move(server));
}

}  // namespace Kest::Host
