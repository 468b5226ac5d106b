#include "host/http/http_connection.h"

#include <algorithm>
#include <boost/asio/buffer.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/http/error.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/write.hpp>
#include <new>
#include <string_view>

#include "host/http/http_responses.h"
#include "host/http/request_head.h"

namespace Kest::Host {
namespace {

namespace net = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;

// What a client may still be sending when it was refused is read for this long, so that it meets
// the response and not a reset connection.
constexpr auto kLingerTime = std::chrono::seconds(5);

// What is written at once: each such part that the client takes is progress.
constexpr size_t kWriteBytes = size_t{64} * 1024;
constexpr size_t kAheadBytes = 4096;

constexpr std::string_view kServerName = "tav-loot-host";
constexpr std::string_view kContinue = "HTTP/1.1 100 Continue\r\n\r\n";
constexpr std::string_view kStreamHead =
    "HTTP/1.1 200 OK\r\n"
    "Server: tav-loot-host\r\n"
    "Content-Type: text/event-stream\r\n"
    "Cache-Control: no-store\r\n"
    "X-Content-Type-Options: nosniff\r\n"
    "Connection: close\r\n";
constexpr std::string_view kComment = ": keep-alive\n\n";
// Comes with the head: proxies hand a head on only when something follows it.
constexpr std::string_view kFirstComment = "\r\n: connected\n\n";

// What a page of an allowed origin may send.
constexpr std::string_view kPageMethods = "DELETE, GET, HEAD, PATCH, POST, PUT";
constexpr std::string_view kPageHeaders = "Accept, Content-Type, If-None-Match, Last-Event-ID";
constexpr std::string_view kReadableHeaders = "ETag, X-Loot-Host-Row, X-Loot-Host-Refusal";
constexpr std::string_view kPreflightSeconds = "600";

}  // namespace

template <typename Member>
auto HttpConnection::Bind(Member member) {
  return [self = shared_from_this(), member](Error error, size_t = 0) {
    if (self->phase_ != Phase::kClosed) (self.get()->*member)(error);
  };
}

// What a reader of heads, chunk sizes and trailers has to hold at once is bounded by the buffer;
// the parser's own limit leaves trailers out, and its fields throw for what they cannot hold.
HttpConnection::HttpConnection(net::ip::tcp::socket socket, HttpConnectionOwner* owner,
                               bool isReserved)
    : owner_(owner),
      isReserved_(isReserved),
      stream_(std::move(socket)),
      silence_(stream_.get_executor()),
      writing_(stream_.get_executor()),
      buffer_(owner->Limits().headBytes) {}

void HttpConnection::Start() {
  Error ignored;
  stream_.socket().set_option(net::ip::tcp::no_delay(true), ignored);
  ReadHead();
}

void HttpConnection::Finish() {
  finishing_ = true;
  if (phase_ != Phase::kHandling && phase_ != Phase::kWriting) Close();
}

bool HttpConnection::Abandoned() const {
  // The owner holds one reference, a pending operation another.
  return phase_ != Phase::kHandling && weak_from_this().use_count() == 1;
}

void HttpConnection::Close() {
  if (phase_ == Phase::kClosed) return;
  phase_ = Phase::kClosed;
  silence_.cancel();
  StopClock();
  stream_.cancel();  // Wine leaves a write to a closed socket open
  stream_.close();
  owner_->Closed(this);
}

// ---- Reading -----------------------------------------------------------------------------------

void HttpConnection::ReadHead() {
  phase_ = Phase::kReading;
  readableBy_.clear();
  parser_.emplace();
  parser_->header_limit(owner_->Limits().headBytes);
  parser_->body_limit(owner_->Limits().bodyBytes);
  const HttpLimits& limits = owner_->Limits();
  stream_.expires_after(isReserved_ ? limits.reservedIdle : limits.idle);
  http::async_read_header(stream_, buffer_, *parser_, Bind(&HttpConnection::OnHead));
}

void HttpConnection::OnHead(Error error) {
  if (error) return OnReadFailure(error);
  const auto& head = parser_->get();
  if (auto response = RefuseAmbiguous(head)) return Send(std::move(*response), true);
  const HttpRequest request = DescribeRequest();
  const HttpHandlers& handlers = owner_->Handlers();
  if (handlers.letsPageRead && handlers.letsPageRead(request)) readableBy_ = request.origin;
  if (auto response = handlers.refuse(request)) {
    return Send(std::move(*response), true);
  }
  if (IsPreflight(request)) return SendPreflight();
  if (beast::iequals(head[http::field::expect], "100-continue")) return Continue100();
  ReadBody();
}

void HttpConnection::Continue100() {
  net::async_write(stream_, net::buffer(kContinue),
                   [self = shared_from_this()](Error error, size_t) {
                     if (self->phase_ == Phase::kClosed) return;
                     error ? self->Close() : self->ReadBody();
                   });
}

void HttpConnection::ReadBody() {
  http::async_read(stream_, buffer_, *parser_, Bind(&HttpConnection::OnBody));
}

void HttpConnection::OnBody(Error error) {
  if (error) return OnReadFailure(error);
  stream_.expires_never();
  closeAfter_ = isReserved_ || !parser_->get().keep_alive();
  HttpRequest request = DescribeRequest();
  request.body = std::move(parser_->get().body());
  phase_ = Phase::kHandling;
  try {
    ReadAhead();
    owner_->Handlers().handle(std::move(request), MakeRespond());
  } catch (const std::bad_alloc&) {
    Send(ProblemResponse(500, "Out of memory"), true);
  }
}

HttpRequest HttpConnection::DescribeRequest() const {
  const auto& message = parser_->get();
  HttpRequest request;
  request.method = Copy(message.method_string());
  request.target = Copy(message.target());
  request.host = FieldOf(message, http::field::host);
  request.origin = FieldOf(message, http::field::origin);
  request.asksFor = FieldOf(message, http::field::access_control_request_method);
  request.contentType = FieldOf(message, http::field::content_type);
  request.accept = ListOf(message, http::field::accept);
  request.lastEventId = Copy(message["Last-Event-ID"]);
  request.ifNoneMatch = ListOf(message, http::field::if_none_match);
  request.isReserved = isReserved_;
  SplitAbsoluteTarget(&request);
  return request;
}

void HttpConnection::OnReadFailure(Error error) {
  if (error == http::error::body_limit)
    return Send(ProblemResponse(413, "Body is too large"), true);
  if (error == http::error::header_limit || error == http::error::buffer_overflow) {
    return Send(ProblemResponse(431, "The head or the trailer of the request is too large."), true);
  }
  const bool unreadable = error.category() == make_error_code(http::error::bad_method).category() &&
                          error != http::error::end_of_stream &&
                          error != http::error::partial_message;
  if (!unreadable) return Close();
  Send(ProblemResponse(400, "The request cannot be read: " + error.message() + "."), true);
}

// ---- What comes meanwhile ----------------------------------------------------------------------

// Reads while something else is under way, since only reading shows that a client has left. The
// next requests are kept, as much as a head may be; what comes beside a stream is dropped.
void HttpConnection::ReadAhead() {
  const size_t space = buffer_.max_size() - buffer_.size();
  if (space == 0) return;
  isReadingAhead_ = true;
  stream_.async_read_some(buffer_.prepare(std::min(kAheadBytes, space)),
                          [self = shared_from_this()](Error error, size_t size) {
                            if (self->phase_ != Phase::kClosed) self->OnReadAhead(error, size);
                          });
}

void HttpConnection::OnReadAhead(Error error, size_t size) {
  isReadingAhead_ = false;
  if (phase_ != Phase::kStreaming) buffer_.commit(size);
  if (phase_ == Phase::kReading) return ReadHead();
  if (phase_ == Phase::kLingering) return BeginDiscard();
  if (error) return Close();
  ReadAhead();
}

// Goes on to a phase that reads for itself: OnReadAhead enters it once nothing is read ahead.
bool HttpConnection::EndReadAhead(Phase next) {
  phase_ = next;
  if (isReadingAhead_) stream_.cancel();
  return !isReadingAhead_;
}

// ---- Responding --------------------------------------------------------------------------------

Respond HttpConnection::MakeRespond() {
  return [weak = weak_from_this()](HttpResponse response) {
    auto self = weak.lock();
    if (!self) return;
    const auto executor = self->stream_.get_executor();
    // The last reference must go on the server's thread, so it travels with the response.
    net::post(executor, [self = std::move(self), response = std::move(response)]() mutable {
      if (self->phase_ != Phase::kHandling) return;
      if (response.stream) return self->BeginStream(std::move(response.stream));
      self->Send(std::move(response), self->closeAfter_);
    });
  };
}

bool HttpConnection::IsPreflight(const HttpRequest& request) const {
  return request.method == "OPTIONS" && !request.asksFor.empty() && !readableBy_.empty();
}

void HttpConnection::SendPreflight() {
  response_ = Response();
  response_.set(http::field::access_control_allow_methods, View(kPageMethods));
  response_.set(http::field::access_control_allow_headers, View(kPageHeaders));
  response_.set(http::field::access_control_max_age, View(kPreflightSeconds));
  HttpResponse empty;
  empty.status = 204;
  Complete(std::move(empty), !parser_->is_done() || !parser_->get().keep_alive());
}

void HttpConnection::Send(HttpResponse response, bool andClose) {
  response_ = Response();
  Complete(std::move(response), andClose);
}

void HttpConnection::Complete(HttpResponse response, bool andClose) {
  phase_ = Phase::kWriting;
  closeAfter_ = andClose || finishing_;
  const auto& request = parser_->get();
  const bool onlyHead = request.method() == http::verb::head;
  response_.version(request.version() == 10 ? 10 : 11);
  response_.result(static_cast<unsigned>(response.status));
  response_.reason(std::string(ReasonPhrase(response.status)));
  response_.set(http::field::server, View(kServerName));
  // A reader may keep what has a tag, and asks each time whether it is still that.
  response_.set(http::field::cache_control, response.entityTag.empty() ? "no-store" : "no-cache");
  if (!response.entityTag.empty()) response_.set(http::field::etag, response.entityTag);
  response_.set("X-Content-Type-Options", "nosniff");
  if (!response.allow.empty()) response_.set(http::field::allow, response.allow);
  for (const auto& [name, value] : response.headers) response_.set(name, value);
  if (response.variesByAccept) response_.set(http::field::vary, "Accept");
  if (!readableBy_.empty()) {
    response_.set(http::field::access_control_allow_origin, readableBy_);
    response_.set(http::field::access_control_expose_headers, View(kReadableHeaders));
    response_.insert(http::field::vary, "Origin");
  }
  if (!response.contentType.empty()) response_.set(http::field::content_type, response.contentType);
  const bool hasBody = response.status != 204 && response.status != 304;
  if (hasBody) response_.content_length(response.body.size());
  response_.keep_alive(!closeAfter_);
  if (!onlyHead && hasBody) response_.body() = std::move(response.body);
  serializer_.emplace(response_);
  serializer_->limit(kWriteBytes);
  WriteSome();
}

void HttpConnection::WriteSome() {
  LimitWrite();
  http::async_write_some(stream_, *serializer_, Bind(&HttpConnection::OnWritten));
}

void HttpConnection::OnWritten(Error error) {
  StopClock();
  if (error) return Close();
  if (!serializer_->is_done()) return WriteSome();
  serializer_.reset();
  response_ = Response();
  if (finishing_) return Close();
  if (closeAfter_) return Linger();
  if (EndReadAhead(Phase::kReading)) ReadHead();
}

void HttpConnection::Linger() {
  Error ignored;
  stream_.socket().shutdown(net::ip::tcp::socket::shutdown_send, ignored);
  if (EndReadAhead(Phase::kLingering)) BeginDiscard();
}

void HttpConnection::BeginDiscard() {
  stream_.expires_after(kLingerTime);
  Discard();
}

void HttpConnection::Discard() {
  stream_.async_read_some(net::buffer(ignored_), [self = shared_from_this()](Error error, size_t) {
    if (self->phase_ == Phase::kClosed) return;
    error ? self->Close() : self->Discard();
  });
}

// ---- Time to write -----------------------------------------------------------------------------

// The stream's own clock would close the socket without Close.
void HttpConnection::LimitWrite() {
  stream_.expires_never();
  writing_.expires_after(owner_->Limits().write);
  writing_.async_wait([self = shared_from_this()](Error error) {
    // The end of an earlier write may still be queued when the next one has begun.
    if (!error && self->writing_.expiry() <= net::steady_timer::clock_type::now()) self->Close();
  });
}

void HttpConnection::StopClock() {
  writing_.expires_at(net::steady_timer::time_point::max());
}

// ---- Streams -----------------------------------------------------------------------------------

void HttpConnection::BeginStream(std::unique_ptr<HttpStream> source) {
  if (finishing_) return Close();
  phase_ = Phase::kStreaming;
  source_ = std::move(source);
  piece_ = kStreamHead;
  if (!readableBy_.empty()) {
    piece_.append("Vary: Origin\r\nAccess-Control-Allow-Origin: ").append(readableBy_ + "\r\n");
  }
  piece_ += kFirstComment;
  written_ = 0;
  if (!isReadingAhead_) {
    buffer_.clear();
    ReadAhead();
  }
  WritePiece();
}

void HttpConnection::Wake() {
  if (phase_ == Phase::kStreaming && piece_.empty()) Pump();
}

void HttpConnection::Pump() {
  piece_ = source_->Next();
  written_ = 0;
  piece_.empty() ? AwaitComment() : WritePiece();
}

void HttpConnection::WritePiece() {
  silence_.cancel();
  LimitWrite();
  stream_.async_write_some(
      net::buffer(piece_.data() + written_, std::min(kWriteBytes, piece_.size() - written_)),
      [self = shared_from_this()](Error error, size_t size) {
        if (self->phase_ == Phase::kClosed) return;
        self->StopClock();
        self->written_ += size;
        if (error) return self->Close();
        if (self->written_ < self->piece_.size()) return self->WritePiece();
        self->piece_.clear();
        self->Pump();
      });
}

void HttpConnection::AwaitComment() {
  silence_.expires_after(owner_->Limits().comment);
  silence_.async_wait([self = shared_from_this()](Error error) {
    if (error || self->phase_ == Phase::kClosed || !self->piece_.empty()) return;
    self->piece_ = kComment;
    self->written_ = 0;
    self->WritePiece();
  });
}

}  // namespace Kest::Host
