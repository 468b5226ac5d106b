#include "host/http/http_server.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <thread>

#include "host/http/http_responses.h"
#include "tests/host/loopback_client.h"

namespace Kest::Host {
namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;
using testing::StartsWith;

// Yields what it was given, then `unlimited` text or nothing.
class TestStream : public HttpStream {
 public:
  explicit TestStream(bool unlimited) : unlimited_(unlimited) {}
  std::string Next() override {
    if (unlimited_) return std::string(65536, 'x');
    return std::exchange(first_, "");
  }

 private:
  const bool unlimited_;
  std::string first_ = "data: 1\n\n";
};

class HttpServerTest : public testing::Test {
 protected:
  ~HttpServerTest() override {
    if (late_.joinable()) late_.join();  // before the server
  }

  void Serve(HttpLimits limits) {
    auto server = HttpServer::Listen("127.0.0.1", 0, limits);
    ASSERT_TRUE(server) << server.GetFailure().text;
    server_ = std::move(server.GetValue());
    const auto refuse = [](const HttpRequest& request) -> std::optional<HttpResponse> {
      if (request.host == "here") return std::nullopt;
      return ProblemResponse(403, "no");
    };
    server_->Serve({refuse, [this](HttpRequest request, Respond respond) {
                      Handle(request, std::move(respond));
                    }});
  }

  void Handle(const HttpRequest& request, Respond respond) {
    if (request.target == "/late") {
      late_ = std::thread([respond] {
        std::this_thread::sleep_for(milliseconds(50));
        respond(JsonResponse("\"late\""));
        respond(JsonResponse("\"twice\""));  // dropped: a request has one response
      });
      return;
    }
    HttpResponse response = JsonResponse(request.method + " " + request.target + " " +
                                         std::to_string(request.body.size()));
    if (request.target == "/none")
      response = {.status = 204, .contentType = {}, .body = {}, .allow = {}};
    if (request.target == "/stream") response.stream = std::make_unique<TestStream>(false);
    if (request.target == "/flood") response.stream = std::make_unique<TestStream>(true);
    respond(std::move(response));
  }

  std::string Exchange(std::string_view request, std::string_view mark = "") {
    LoopbackClient client(server_->Port());
    client.Send(request);
    return client.ReadUpTo(mark);
  }

  std::unique_ptr<HttpServer> server_;
  std::thread late_;
};

TEST_F(HttpServerTest, AnswersPipelinedRequestsInOrderOnOneConnection) {
  Serve({});
  LoopbackClient client(server_->Port());
  client.Send(
      "GET /late HTTP/1.1\r\nHost: here\r\n\r\n"
      "POST /b?x=1 HTTP/1.1\r\nHost: here\r\nContent-Length: 3\r\n\r\nabc"
      "PUT /chunked HTTP/1.1\r\nHost: here\r\nTransfer-Encoding: chunked\r\n\r\n"
      "2\r\nab\r\n1\r\nc\r\n0\r\n\r\n"
      "HEAD /d HTTP/1.1\r\nHost: here\r\n\r\n"
      "GET /none HTTP/1.1\r\nHost: here\r\n\r\n"
      "GET http://here/absolute HTTP/1.1\r\nHost: elsewhere\r\nConnection: close\r\n\r\n");
  const std::string text = client.ReadToEnd();
  size_t from = 0;
  for (const char* expected :
       {"\r\n\r\n\"late\"", "\r\n\r\nPOST /b?x=1 3", "\r\n\r\nPUT /chunked 3",
        "Content-Length: 9\r\n\r\nHTTP/1.1 204 No Content", "\r\n\r\nGET /absolute 0"}) {
    const size_t place = text.find(expected, from);
    ASSERT_NE(place, std::string::npos) << expected << " is missing in\n" << text;
    from = place + 1;
  }
  EXPECT_EQ(text.find("twice"), std::string::npos);
}

TEST_F(HttpServerTest, RefusesWithAProblemAndGoesOnServing) {
  HttpLimits limits;
  limits.bodyBytes = 1000;
  limits.headBytes = 2000;
  Serve(limits);
  const std::string get = "GET / HTTP/1.1\r\nHost: here\r\n";
  const std::string put = "PUT / HTTP/1.1\r\nHost: here\r\n";
  const std::string chunked = put + "Transfer-Encoding: chunked\r\n\r\n";
  const struct {
    const char* why;
    std::string request;
    const char* response;
  } kCases[] = {
      {"no HTTP", "hello\r\n\r\n", "HTTP/1.1 400 "},
      {"another version", "GET / HTTP/3.7\r\nHost: here\r\n\r\n", "HTTP/1.1 400 "},
      {"two lengths", get + "Content-Length: 1\r\nContent-Length: 2\r\n\r\n", "HTTP/1.1 400 "},
      {"foreign host", "GET / HTTP/1.1\r\nHost: there\r\n\r\n", "HTTP/1.1 403 "},
      {"two hosts", get + "Host: there\r\n\r\n", "HTTP/1.1 403 "},
      {"announced body too large", put + "Content-Length: 1001\r\n\r\n", "HTTP/1.1 413 "},
      {"sent body too large", chunked + "3e9\r\n" + std::string(1001, 'x') + "\r\n0\r\n\r\n",
       "HTTP/1.1 413 "},
      {"head too large", get + "X: " + std::string(3000, 'x') + "\r\n\r\n", "HTTP/1.1 431 "},
      {"trailer too large", chunked + "0\r\nX: " + std::string(3000, 'x') + "\r\n\r\n",
       "HTTP/1.1 431 "},
      {"trailer no field can hold", chunked + "0\r\nX: " + std::string(70'000, 'x') + "\r\n\r\n",
       "HTTP/1.1 431 "},
      {"unknown encoding", put + "Transfer-Encoding: gzip\r\n\r\n", "HTTP/1.1 501 "},
      {"asks to go on", put + "Expect: 100-continue\r\nContent-Length: 2\r\n\r\nab",
       "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 200 OK"},
      {"the largest body",
       "PUT / HTTP/1.0\r\nHost: here\r\nContent-Length: 1000\r\n\r\n" + std::string(1000, 'x'),
       "HTTP/1.0 200 OK"}};
  for (const auto& c : kCases)
    EXPECT_THAT(Exchange(c.request, "OK"), StartsWith(c.response)) << c.why;
}

TEST_F(HttpServerTest, ARequestThatDoesNotArriveIsGivenUp) {
  Serve({.idle = milliseconds(100)});
  EXPECT_EQ(Exchange("PUT / HTTP/1.1\r\nHost: here\r\nContent-Length: 10\r\n\r\nabc"), "");
}

TEST_F(HttpServerTest, ARefusedLargeUploadStillGetsItsResponse) {
  Serve({});
  LoopbackClient client(server_->Port());
  client.Send("POST / HTTP/1.1\r\nHost: here\r\nContent-Length: 67108865\r\n\r\n");
  for (int i = 0; i < 64; ++i) client.Send(std::string(1 << 20, 'x'));
  EXPECT_THAT(client.ReadUpTo("\r\n\r\n"), StartsWith("HTTP/1.1 413 Payload Too Large"));
}

TEST_F(HttpServerTest, AStreamIsWokenCommentedAndEndedByFinish) {
  Serve({.comment = milliseconds(50)});
  LoopbackClient client(server_->Port());
  client.Send("GET /stream HTTP/1.1\r\nHost: here\r\n\r\n");
  EXPECT_THAT(client.ReadUpTo("data: 1\n\n"), HasSubstr("Content-Type: text/event-stream\r\n"));
  server_->WakeStreams();  // with nothing new
  EXPECT_EQ(client.ReadUpTo(": keep-alive\n\n"), ": keep-alive\n\n");
  server_->Finish(milliseconds(5'000));
  client.ReadToEnd();
  EXPECT_FALSE(LoopbackClient(server_->Port()).Connected());
}

TEST_F(HttpServerTest, AReaderThatTakesNothingKeepsItsPlaceOnlyForAWhile) {
  Serve({.connections = 1, .write = milliseconds(100)});
  LoopbackClient stuck(server_->Port());
  stuck.Send("GET /flood HTTP/1.1\r\nHost: here\r\n\r\n");
  stuck.ReadUpTo("xxx");
  EXPECT_THAT(Exchange(""), StartsWith("HTTP/1.1 503 ")) << "one connection too many";
  std::string response;
  for (int tries = 0; tries < 500 && !response.starts_with("HTTP/1.0 200"); ++tries) {
    std::this_thread::sleep_for(milliseconds(10));
    response = Exchange("GET / HTTP/1.0\r\nHost: here\r\n\r\n");
  }
  EXPECT_THAT(response, StartsWith("HTTP/1.0 200"));
}

TEST_F(HttpServerTest, ATakenPortIsAFailureThatNamesIt) {
  Serve({});
  const auto second = HttpServer::Listen("127.0.0.1", server_->Port(), {});
  ASSERT_FALSE(second);
  EXPECT_THAT(second.GetFailure().text,
              StartsWith("Cannot listen on 127.0.0.1:" + std::to_string(server_->Port()) + ": "));
}

}  // namespace
}  // namespace Kest::Host
