#include "host/http/http_server.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <thread>

#include "host/http/http_responses.h"
#include "tests/host/http_text.h"
#include "tests/host/loopback_client.h"
#include "tests/support/golden.h"

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
      if (request.isReserved && request.target != "/control") return TooManyConnections();
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
    if (request.target == "/wait") return;  // for ever
    HttpResponse response = JsonResponse(request.method + " " + request.target + " " +
                                         std::to_string(request.body.size()));
    if (request.target == "/none") response = {.status = 204, .contentType = {}, .body = {}};
    if (request.target == "/large") response.body = LargeBody();
    if (request.target == "/stream") response.stream = std::make_unique<TestStream>(false);
    if (request.target == "/flood") response.stream = std::make_unique<TestStream>(true);
    respond(std::move(response));
  }

  static std::string LargeBody() {
    std::string body;
    for (size_t i = 0; i < kLargeParts; ++i) body.append(size_t{512} * 1024, 'x').push_back('|');
    return body;
  }

  // Whether a connection becomes free for an ordinary request within a while.
  bool FreesAPlace() {
    for (int tries = 0; tries < 500; ++tries) {
      if (Exchange("GET / HTTP/1.0\r\nHost: here\r\n\r\n").starts_with("HTTP/1.0 200")) return true;
      std::this_thread::sleep_for(milliseconds(10));
    }
    return false;
  }

  static constexpr size_t kLargeParts = 64;

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
  EXPECT_TRUE(
      Testing::GoldenCases("tests/host/http_requests.txt", [this](const std::string& request) {
        return Outline(Exchange(RequestOf(request), "\r\n\r\nPUT / "));
      }));
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
  Serve({.connections = 1, .reserved = 0, .write = milliseconds(100)});
  LoopbackClient stuck(server_->Port());
  stuck.Send("GET /flood HTTP/1.1\r\nHost: here\r\n\r\n");
  stuck.ReadUpTo("xxx");
  EXPECT_THAT(Exchange(""), StartsWith("HTTP/1.1 503 ")) << "one connection too many";
  EXPECT_TRUE(FreesAPlace());
}

TEST_F(HttpServerTest, AReaderThatIsOnlySlowGetsAll) {
  Serve({.write = milliseconds(500)});
  LoopbackClient slow(server_->Port());
  slow.Send("GET /large HTTP/1.0\r\nHost: here\r\n\r\n");
  for (size_t i = 0; i < kLargeParts; ++i) {
    std::this_thread::sleep_for(milliseconds(20));
    ASSERT_THAT(slow.ReadUpTo("|"), testing::EndsWith("|")) << i;
  }
}

TEST_F(HttpServerTest, AClientThatLeavesWhileItsRequestWaitsGivesItsPlaceBack) {
  const std::string ask = " HTTP/1.1\r\nHost: here\r\n\r\n";
  Serve({.connections = 1, .reserved = 3, .reservedIdle = milliseconds(100)});
  auto waiting = std::make_unique<LoopbackClient>(server_->Port());
  waiting->Send("GET /wait" + ask + "GET /next" + ask);
  EXPECT_THAT(Exchange("GET /x" + ask), StartsWith("HTTP/1.1 503 "));
  EXPECT_THAT(Exchange("GET /control" + ask),
              testing::AllOf(StartsWith("HTTP/1.1 200 "), HasSubstr("Connection: close")));
  EXPECT_EQ(Exchange(""), "") << "an idle one does not keep a reserved place";
  waiting.reset();
  EXPECT_TRUE(FreesAPlace());
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
