// The example, loaded from its library as a host loads it.
#include <gmock/gmock.h>

#include "plugin/host_interface.h"
#include "tests/load/system.h"
#include "tests/support/fake_host.h"

namespace Kest::Testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

TEST(HelloPlugin, GreetsAndPublishes) {
  void* library = OpenLibrary(HELLO_PLUGIN);
  ASSERT_NE(library, nullptr);
  const auto load = reinterpret_cast<KestLoadFunction>(FindEntry(library, "load_hello"));
  ASSERT_NE(load, nullptr);
  FakeHost host;
  host.Load(load);
  EXPECT_STREQ(host.Block().fullName, "vwm-be-hello");
  ASSERT_TRUE(host.Start());
  EXPECT_THAT(host.Printed({Action::kLog}), Contains(HasSubstr("vwm-be-hello says hello")));

  const std::string plain = R"({"text":"Hello, Ana.","tone":"PLAIN","number":1,"remark":null})";
  const std::string warm = R"({"text":"Hello, Bo!","tone":"WARM","number":2,"remark":[1,{}]})";
  EXPECT_EQ(host.Post("/hello/v1/greetings/Ana").body, plain);
  EXPECT_EQ(host.Post("/hello/v1/greetings/Bo?tone=WARM", "[1,{}]").body, warm);
  const std::string update = "publish Update /hello/v1/latest-greeting ";
  EXPECT_THAT(host.Printed({Action::kPublish}), ElementsAre(update + plain, update + warm));
  EXPECT_EQ(host.Post("/hello/v1/greetings/ghost").status, 404);
  EXPECT_EQ(host.Post("/hello/v1/greetings/Ana?tone=LOUD").status, 400);
  host.Stop();
}

}  // namespace
}  // namespace Kest::Testing
