#include "client/sibling_client.h"

#include <limits>
#include <sstream>

#include "tests/loot/calls_fixture.h"
#include "tests/support/golden.h"

namespace Kest::Client::Loot {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

using Names = std::vector<std::string>;

class SiblingClientTest : public CallsTest {
 protected:
  static constexpr const char* kUrl = "/tav-x/v1/thing";
  static constexpr const char* kEvent = "OnJsonApiEvent_/tav-x/v1/thing";

  template <class R, class... A>
  Maybe<R> Ask(HttpMethod method, const A&... arguments) {
    Maybe<R> result = Failure{"no response"};
    host_.RunTask([&] { result = client_.Request<R>(method, kUrl, arguments...); });
    return result;
  }
  std::vector<std::string> SubscriptionLog() const {
    return host_.Printed({Testing::Action::kSubscribe, Testing::Action::kUnsubscribe});
  }
  void FollowNames(const std::string& tag) {
    client_.Subscribe<Names>(kUrl, [this, tag](const Names* value, ResourceEventType type) {
      seen_.push_back(tag + std::to_string(static_cast<int>(type)) + ":" +
                      (value != nullptr ? std::to_string(value->size()) : "none"));
    });
  }
};

TEST_F(SiblingClientTest, ArgumentsTravelInTheQueryOrAsTheBody) {
  host_.OnRequest("GET", kUrl, FakeResponse{200, R"({"TOURNAMENT_LOGO":"token"})"});
  host_.OnRequest("POST", kUrl, FakeResponse{204, ""});
  const auto tokens = Ask<std::map<std::string, std::string>>(
      HttpMethod::kGet, Query("inventoryTypes", Names{"TOURNAMENT_LOGO"}),
      Query("q", std::string("a b&\xC3\xA9")), Query("n", -3));
  ASSERT_TRUE(tokens) << tokens.GetFailure().text;
  EXPECT_EQ(tokens.GetValue().at("TOURNAMENT_LOGO"), "token");
  ASSERT_TRUE(Ask<Nothing>(HttpMethod::kPost, TestRecord{"x", 1.5}, Query("force", true)));
  EXPECT_THAT(Requests(),
              ElementsAre("request GET /tav-x/v1/thing?inventoryTypes=%5B%22TOURNAMENT_LOGO%22%5D"
                          "&q=a%20b%26%C3%A9&n=-3",
                          R"(request POST /tav-x/v1/thing?force=true {"name":"x","number":1.5})"));
}

TEST_F(SiblingClientTest, EachStepFailsWithItsOwnText) {
  EXPECT_TRUE(Testing::GoldenCases("tests/loot/cases/responses.txt", [this](auto input) {
    std::istringstream lines(input);
    std::string status;
    FakeResponse response;
    std::getline(std::getline(lines, status), response.contentType);
    std::getline(std::getline(lines, response.message), response.body);
    response.status = std::stoi(status);
    host_.OnRequest("GET", kUrl, response);
    const Failure failure = Ask<Names>(HttpMethod::kGet, Query("q", 1)).GetFailure();
    return std::to_string(failure.status) + " " + failure.text;
  }));
  host_.OnRequest("GET", kUrl, FakeResponse{200, "", "", "", true});
  std::string text;
  host_.RunTask([&] { text = client_.Request<Nothing>(HttpMethod::kGet, kUrl).GetFailure().text; });
  EndPlugin();
  EXPECT_EQ(text, "Finalizing") << "cut short";
}

TEST_F(SiblingClientTest, AnArgumentThatDoesNotConvertSendsNothing) {
  const TestRecord unwritable{"x", std::numeric_limits<double>::quiet_NaN()};
  for (const Maybe<Nothing>& result : {Ask<Nothing>(HttpMethod::kPut, unwritable, Query("a", 1)),
                                       Ask<Nothing>(HttpMethod::kPut, Query("a", unwritable))}) {
    ASSERT_FALSE(result);
    EXPECT_EQ(result.GetFailure().status, 400);
    EXPECT_THAT(result.GetFailure().text,
                StartsWith("Request not sent: Error converting parameters for PUT "
                           "/tav-x/v1/thing: "));
  }
  EXPECT_THAT(Requests(), IsEmpty());
}

TEST_F(SiblingClientTest, EventsAreConvertedOrDroppedAndADeleteHasNoValue) {
  host_.SetResource(kUrl, R"(["present"])");
  host_.RunTask([this] { FollowNames(""); });
  host_.SetResource(kUrl, R"({"not":"a list"})");
  for (const char* event : {R"({"uri":"/tav-x/v1/thing","eventType":"Update"})",
                            R"({"uri":"/tav-x/v1/thing","eventType":"Never","data":[]})", "torn"}) {
    host_.DeliverEvent(kEvent, event);
  }
  host_.SetResource(kUrl, R"(["a","b"])");
  host_.RemoveResource(kUrl);
  EXPECT_THAT(seen_, ElementsAre("0:1", "1:2", "2:none"));
}

TEST_F(SiblingClientTest, UsesAreCountedAndTheHostHearsOfTheFirstAndTheLast) {
  const std::string subscribed = std::string("subscribe ") + kEvent;
  for (const char* tag : {"a", "b"}) host_.RunTask([=, this] { FollowNames(tag); });
  host_.SetResource(kUrl, "[]");
  const auto unsubscribe = [this] { client_.Unsubscribe(kUrl); };
  host_.RunTask(unsubscribe);
  host_.SetResource(kUrl, "[]");
  EXPECT_THAT(SubscriptionLog(), ElementsAre(subscribed));
  for (int i = 0; i < 2; ++i) host_.RunTask(unsubscribe);
  host_.SetResource(kUrl, "[]");
  EXPECT_THAT(seen_, ElementsAre("a0:0", "b0:0", "a1:0"));
  EXPECT_THAT(SubscriptionLog(), ElementsAre(subscribed, "un" + subscribed));
  EXPECT_THAT(log_.Lines(), ElementsAre("  WARN|| vwm-be-test: Not subscribed to /tav-x/v1/thing"));
}

TEST_F(SiblingClientTest, HandlersMayChangeTheSubscriptionsTheyAreCalledFrom) {
  host_.RunTask([this] {
    client_.Subscribe<Names>(kUrl, [this](const Names*, ResourceEventType) {
      seen_.push_back("first");
      client_.Unsubscribe(kUrl);  // the youngest: the second one, whose turn would be next
      if (seen_.size() == 1) FollowNames("new");
    });
    FollowNames("second");
  });
  host_.SetResource(kUrl, "[]");
  host_.SetResource(kUrl, "[]");
  EXPECT_THAT(seen_, ElementsAre("first", "first"));
}

TEST_F(SiblingClientTest, APatternFollowsWhatItMatchesThroughTheEventOfAllResources) {
  host_.RunTask([this] {
    client_.Subscribe<int32_t>("/tav-*/v1/*", [this](const int32_t* value, ResourceEventType) {
      seen_.push_back(std::to_string(*value));
    });
  });
  host_.SetResource("/tav-a/v1/b/c", "1");
  host_.SetResource("/tav-a/v2/b", "2");
  host_.SetResource("/other/tav-a/v1/b", "3");
  EXPECT_THAT(seen_, ElementsAre("1"));
  EXPECT_THAT(SubscriptionLog(), ElementsAre("subscribe OnJsonApiEvent"));
  host_.RunTask([this] { client_.Unsubscribe("/tav-*/v1/*"); });
  EXPECT_THAT(host_.Subscriptions(), IsEmpty());
}

TEST(MatchesPattern, AStarTakesAnyCharactersAndBacktracks) {
  EXPECT_TRUE(Testing::GoldenCases("tests/loot/cases/patterns.txt", [](const std::string& input) {
    const size_t space = input.find(' ');
    return MatchesPattern(input.substr(0, space), input.substr(space + 1)) ? "matches" : "differs";
  }));
  EXPECT_FALSE(MatchesPattern("*a*a*a*a*b", std::string(100'000, 'a')));  // comes back at once
}

TEST_F(SiblingClientTest, PublishesWhatConvertsAndLogsWhatDoesNot) {
  host_.RunTask([this] {
    client_.Publish("/tav-loot/v1/x", ResourceEventType::kUpdate, TestRecord{"n", 2});
    client_.Publish({"/tav-loot/v1/x", ResourceEventType::kDelete, {}, true});
    client_.Publish("/tav-loot/v1/y", ResourceEventType::kCreate, UnregisteredRecord{});
  });
  EXPECT_THAT(host_.Printed({Testing::Action::kPublish}),
              ElementsAre(R"(publish Update /tav-loot/v1/x {"name":"n","number":2.0})",
                          "publish Delete /tav-loot/v1/x"));
  EXPECT_THAT(log_.Lines(), ElementsAre(" ERROR|| vwm-be-test: Couldn't convert resource "
                                        "Kest::Client::Loot::UnregisteredRecord for event uri "
                                        "\"/tav-loot/v1/y\""));
}

}  // namespace
}  // namespace Kest::Client::Loot
