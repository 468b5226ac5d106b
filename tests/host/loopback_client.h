// A plain client for tests: sends bytes unchanged and reads what comes back.
#pragma once

#include <utility>  // Asio of this age needs it ahead

#include <gtest/gtest.h>

#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/write.hpp>
#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace Kest::Host {

class LoopbackClient {
 public:
  explicit LoopbackClient(uint16_t port) {
    Error error;
    socket_.connect({boost::asio::ip::address_v4::loopback(), port}, error);
    connected_ = !error;
  }

  bool Connected() const { return connected_; }

  // False: the other side no longer takes it.
  bool Send(std::string_view bytes) {
    Error error;
    boost::asio::write(socket_, boost::asio::buffer(bytes), error);
    return !error;
  }
  // Reads until `mark` has come and takes everything up to it; with an empty mark up to the end of
  // the connection. What came is returned also when the mark did not.
  std::string ReadUpTo(std::string_view mark) {
    size_t end = std::string::npos;
    while (mark.empty() || (end = arrived_.find(mark)) == std::string::npos) {
      if (!ReadSome()) break;
    }
    std::string text = arrived_.substr(0, end == std::string::npos ? end : end + mark.size());
    arrived_.erase(0, text.size());
    return text;
  }
  std::string ReadToEnd() { return ReadUpTo({}); }

 private:
  using Error = boost::system::error_code;

  // False: the connection has ended. That nothing comes for a long time fails the test.
  bool ReadSome() {
    char piece[65536];
    size_t count = 0;
    socket_.async_read_some(boost::asio::buffer(piece),
                            [&count](const Error&, size_t size) { count = size; });
    io_.restart();
    io_.run_for(std::chrono::seconds(10));
    if (!io_.stopped()) {
      ADD_FAILURE() << "nothing came for a long time";
      socket_.cancel();
      io_.run();
    }
    arrived_.append(piece, count);
    return count > 0;
  }

  boost::asio::io_context io_{1};
  boost::asio::ip::tcp::socket socket_{io_};
  bool connected_ = false;
  std::string arrived_;
};

}  // namespace Kest::Host
