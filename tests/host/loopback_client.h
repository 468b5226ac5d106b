// A plain client for tests: sends bytes as they stand and reads what comes back.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace Kest::Host {

class LoopbackClient {
 public:
  explicit LoopbackClient(uint16_t port) : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
    const timeval limit{10, 0};
    setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof(limit));
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    connected_ = connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0;
  }
  ~LoopbackClient() { close(socket_); }
  LoopbackClient(const LoopbackClient&) = delete;
  LoopbackClient& operator=(const LoopbackClient&) = delete;

  bool Connected() const { return connected_; }

  // False: the other side no longer takes it.
  bool Send(std::string_view bytes) {
    while (!bytes.empty()) {
      const ssize_t sent = send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
      if (sent <= 0) return false;
      bytes.remove_prefix(static_cast<size_t>(sent));
    }
    return true;
  }
  // Reads until `mark` has come and takes everything up to it; with an empty mark up to the end of
  // the connection. What came is answered also when the mark did not.
  std::string ReadUpTo(std::string_view mark) {
    size_t end = std::string::npos;
    while (mark.empty() || (end = arrived_.find(mark)) == std::string::npos) {
      char piece[65536];
      const ssize_t count = recv(socket_, piece, sizeof(piece), 0);
      if (count <= 0) break;
      arrived_.append(piece, static_cast<size_t>(count));
    }
    std::string text = arrived_.substr(0, end == std::string::npos ? end : end + mark.size());
    arrived_.erase(0, text.size());
    return text;
  }
  std::string ReadToEnd() { return ReadUpTo({}); }

 private:
  const int socket_;
  bool connected_ = false;
  std::string arrived_;
};

}  // namespace Kest::Host
