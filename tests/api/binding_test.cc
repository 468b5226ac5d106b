#include "tests/api/sample_api.h"
#include "tests/support/golden.h"

namespace Kest::Sample {
namespace {

// "/url", the content type and the body, line by line.
std::string OutcomeOf(const std::string& request) {
  static const Api kApi;
  const size_t url = std::min(request.find('\n'), request.size());
  const size_t type = std::min(request.find('\n', url + 1), request.size());
  const auto part = [&request](size_t begin, size_t end) {
    return begin < end ? request.substr(begin, end - begin) : std::string();
  };
  return Summary(kApi.Get(part(0, url), part(url + 1, type), part(type + 1, request.size())));
}

TEST(Requests, EachHasItsOutcome) {
  EXPECT_TRUE(Testing::GoldenCases("tests/api/requests.txt", OutcomeOf));
}

TEST(BindHeaders, AreStrictAndTheLastOfANameCounts) {
  const Api api;
  const auto get = [&api](std::initializer_list<HeaderPair> headers) {
    Request request{"GET", "/header", {}, {}, {}, {headers.begin(), headers.size()}};
    return Summary(api.dispatcher().Handle(request));
  };
  EXPECT_EQ(get({{"name", ""}, {"any", "b"}, {"name", "a"}}), "200 \"a/b\"");
  EXPECT_EQ(get({{"name", "a"}, {"Name", "b"}}), "400 Unknown argument 'Name' for 'Header'.");
  EXPECT_EQ(get({}), "400 A value for 'name' is required.");
  EXPECT_EQ(Summary(api.Get("/header?name=a")),
            "400 Argument 'name' for 'Header' was specified in an invalid location.");
}

TEST(BindQuery, OneThatOutgrowsAValueIsRejectedAsBadRequest) {
  std::string url = "/query?o";
  for (size_t i = 0; i < kMaxTreeValues; ++i) url += ".a";
  EXPECT_EQ(Summary(Api().Get(url + "=x")), "400 Too many values.");
}

}  // namespace
}  // namespace Kest::Sample
