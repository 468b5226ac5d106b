// One HTTP connection of the server. Beast stays inside this header's two users.
//
// Threads:  the server's thread only; the Respond it hands out may be called on any.
// Lifetime: the owner holds it until it calls Closed; pending operations hold it to their end.
#pragma once

#include <utility>  // Asio of this age needs it ahead

#include <array>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http/message.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/serializer.hpp>
#include <boost/beast/http/string_body.hpp>
#include <memory>
#include <optional>
#include <string>

#include "host/http/http_limits.h"
#include "host/http/http_message.h"

namespace Kest::Host {

class HttpConnection;

class HttpConnectionOwner {
 public:
  virtual const HttpLimits& Limits() const = 0;
  virtual const HttpHandlers& Handlers() const = 0;
  virtual void Closed(HttpConnection* connection) = 0;

 protected:
  ~HttpConnectionOwner() = default;
};

class HttpConnection : public std::enable_shared_from_this<HttpConnection> {
 public:
  // `owner` outlives the connection. `isReserved`: it is one of those kept for controls, and serves
  // one request.
  HttpConnection(boost::asio::ip::tcp::socket socket, HttpConnectionOwner* owner, bool isReserved);

  void Start();
  // A stream looks for something new.
  void Wake();
  // Closes now, or after the response a request waits for.
  void Finish();
  void Close();
  // Whether nothing is under way that would ever end it: its last step was broken off by an
  // exception. Counts references, so the caller holds none but the owner's.
  bool Abandoned() const;

 private:
  using Error = boost::beast::error_code;
  using Parser = boost::beast::http::request_parser<boost::beast::http::string_body>;
  using Response = boost::beast::http::response<boost::beast::http::string_body>;
  using Serializer = boost::beast::http::response_serializer<boost::beast::http::string_body>;
  enum class Phase { kReading, kHandling, kWriting, kStreaming, kLingering, kClosed };

  void ReadHead();
  void OnHead(Error error);
  void Continue100();
  void ReadBody();
  void OnBody(Error error);
  void OnReadFailure(Error error);
  HttpRequest DescribeRequest() const;  // without its body
  // Whether a page asks if it may send a request, and it may.
  bool IsPreflight(const HttpRequest& request) const;
  void SendPreflight();
  Respond MakeRespond();

  void ReadAhead();
  void OnReadAhead(Error error, size_t size);
  bool EndReadAhead(Phase next);

  void Send(HttpResponse response, bool andClose);
  // Sends the response with the fields that response_ has already.
  void Complete(HttpResponse response, bool andClose);
  void WriteSome();
  void OnWritten(Error error);
  void Linger();
  void BeginDiscard();
  void Discard();

  void BeginStream(std::unique_ptr<HttpStream> source);
  void Pump();
  void WritePiece();
  void AwaitComment();

  // The write that begins has its time; StopClock when it has ended.
  void LimitWrite();
  void StopClock();

  // Wraps a completion: it holds this object and is dropped once the connection is closed.
  template <typename Member>
  auto Bind(Member member);

  HttpConnectionOwner* const owner_;
  const bool isReserved_;
  boost::beast::tcp_stream stream_;
  boost::asio::steady_timer silence_;
  boost::asio::steady_timer writing_;
  boost::beast::flat_buffer buffer_;
  std::optional<Parser> parser_;
  std::string readableBy_;  // the origin of the page that may read the response; empty: none
  Response response_;
  std::optional<Serializer> serializer_;
  std::unique_ptr<HttpStream> source_;
  std::string piece_;  // the part of a stream that is being written; empty: none is
  size_t written_ = 0;
  std::array<char, 4096> ignored_;
  Phase phase_ = Phase::kReading;
  bool isReadingAhead_ = false;
  bool closeAfter_ = false;
  bool finishing_ = false;
};

}  // namespace Kest::Host
