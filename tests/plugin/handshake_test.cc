#include "plugin/handshake.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "binding/type_registry.h"
#include "plugin/plugin_events.h"
#include "plugin/text_view.h"
#include "tests/plugin/scripted_plugin.h"
#include "tests/support/log_capture.h"

namespace Kest::Testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class HandshakeTest : public ::testing::Test {
 protected:
  HandshakeTest() { ScriptedPlugin::script = PluginScript(); }
  static KestHandshakeBlock Greet(const ApiVersion& host) {
    KestHandshakeBlock block{};
    block.major = host.major;
    block.minor = host.minor;
    block.patch = host.patch;
    ScriptedPlugin::Handshake(&block);
    return block;
  }
};

TEST_F(HandshakeTest, AcceptsEveryHostOfItsMajorThatIsNotOlder) {
  const ApiVersion kHosts[] = {{18, 0, 0}, {18, 0, 7}, {18, 3, 0}, {18, 0xffffffff, 0}};
  for (const ApiVersion& host : kHosts) {
    SCOPED_TRACE(VersionText(host));
    const KestHandshakeBlock block = Greet(host);
    EXPECT_EQ((ApiVersion{block.major, block.minor, block.patch}), kPluginApiVersion);
    ASSERT_NE(block.context, nullptr);
    EXPECT_STREQ(block.fullName, "vwm-be-test");
    block.callbacks->stop(block.context);
  }
  EXPECT_EQ(ScriptedPlugin::script.alive, 0);
}

TEST_F(HandshakeTest, OtherMajorsEndTheProcessAndSayWhy) {
  for (const ApiVersion& host : {ApiVersion{17, 9, 9}, ApiVersion{19, 0, 0}}) {
    const std::string line =
        "vwm-be-test which supports plugin API 18.0.0 is not compatible with "
        "core's plugin API " +
        VersionText(host);
    EXPECT_DEATH(Greet(host), line + "(.|\n)*Assertion failed!\n\nExpression: ALE-EECF0606");
  }
}

TEST_F(HandshakeTest, WithoutMemoryOnlyTheVersionAndTheCallbacksAreHandedOut) {
  ScriptedPlugin::script.hasMemory = false;
  const KestHandshakeBlock block = Greet({18, 2, 1});
  EXPECT_EQ((ApiVersion{block.major, block.minor, block.patch}), kPluginApiVersion);
  EXPECT_EQ(block.context, nullptr);
  EXPECT_EQ(block.fullName, nullptr);
  EXPECT_EQ(block.api, nullptr);
  FakeHost host;
  KestStatistics statistics{};
  EXPECT_FALSE(block.callbacks->start(nullptr, host.Services()));
  block.callbacks->statistics(nullptr, &statistics);
  block.callbacks->stop(nullptr);
  Kest::Handshake(nullptr, "test", nullptr);
}

TEST_F(HandshakeTest, AnExceptionInRegistrationLeavesNoPluginObject) {
  ScriptedPlugin::script.registerApi = [](ScriptedPlugin&) { throw std::bad_alloc(); };
  LogCapture log;
  EXPECT_EQ(Greet({18, 0, 0}).context, nullptr);
  EXPECT_EQ(ScriptedPlugin::script.alive, 0);
  EXPECT_THAT(log.Lines(), ElementsAre(" ERROR|| Handshake: Out of memory"));
}

TEST_F(HandshakeTest, RegistersTheBuiltInsBeforeThePluginsOwnAndThenLogsIt) {
  TypeRegistry::ResetProcessForTests();
  LogCapture log;
  std::vector<std::string> typesBefore;
  ScriptedPlugin::script.registerApi = [&](ScriptedPlugin&) {
    for (const TypeRecord* type : TypeRegistry::Process().Types()) {
      typesBefore.push_back(type->name);
    }
    EXPECT_THAT(log.Lines(), IsEmpty());
  };
  const KestHandshakeBlock block = Greet({18, 0, 0});
  EXPECT_THAT(typesBefore,
              ElementsAre("PluginManagerState", "PluginManagerResource", "PluginResourceEventType",
                          "PluginResourceEvent", "PluginSvdsEvent", "PluginSvdsResponse",
                          "PluginServiceProxyResponse"));
  EXPECT_THAT(log.Lines(), ElementsAre("ALWAYS|| vwm-be-test api registered"));
  const EventRecord* event = TypeRegistry::Process().FindEvent("OnServiceProxyAsyncEvent");
  ASSERT_NE(event, nullptr);
  EXPECT_EQ(event->description, "Fired when an async service proxy message is received.");
  EXPECT_EQ(event->payload.record,
            TypeRegistry::Process().FindByName("PluginServiceProxyResponse"));
  block.callbacks->stop(block.context);
}

TEST_F(HandshakeTest, DescribesEndpointsAndEventsInTheirOrder) {
  const KestHandshakeBlock block = Greet({18, 0, 0});
  ASSERT_EQ(block.api->size, sizeof(KestApiDescriptor));
  ASSERT_EQ(block.api->endpointCount, 1u);
  const KestEndpoint& endpoint = block.api->endpoints[0];
  EXPECT_EQ(endpoint.methodId, 2);
  EXPECT_EQ(ToView(endpoint.pathTemplate), "/test/v1/answer/{name}");
  EXPECT_EQ(ToView(endpoint.functionName), "GetAnswer");
  EXPECT_EQ(ToView(endpoint.result.name), "string");
  ASSERT_EQ(endpoint.argumentCount, 1u);
  EXPECT_EQ(ToView(endpoint.arguments[0].name), "name");
  EXPECT_EQ(ToView(endpoint.arguments[0].description), "Any word");
  EXPECT_EQ(ToView(endpoint.arguments[0].type.name), "string");
  EXPECT_EQ(endpoint.arguments[0].location, KEST_LOCATION_PATH);
  EXPECT_FALSE(endpoint.arguments[0].optional);
  std::vector<std::string_view> events;
  for (size_t i = 0; i < block.api->eventNameCount; ++i) {
    events.push_back(ToView(block.api->eventNames[i]));
  }
  EXPECT_THAT(events, ElementsAre("OnJsonApiEvent", "OnSvdsEvent", "OnServiceProxyUuidEvent",
                                  "OnServiceProxyMethodEvent", "OnServiceProxyAsyncEvent"));
  block.callbacks->stop(block.context);
}

TEST(PluginNames, ThePrefixFollowsTheExactType) {
  struct Case {
    const char* why;
    const char* type;
    const char* fullName;
    bool isError;
  };
  const Case kCases[] = {{"backend", "backend", "vwm-be-x", false},
                         {"frontend", "frontend", "vwm-fe-x", false},
                         {"one letter more", "backendx", "vwm-xx-x", true},
                         {"other case", "Backend", "vwm-xx-x", true},
                         {"nothing", "", "vwm-xx-x", true}};
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.why);
    LogCapture log;
    EXPECT_EQ(MakePluginNames("x", c.type).fullName, c.fullName);
    const std::string line =
        " ERROR||             Plugin Manager| GetFullNameFromShortNameAndType(\"x\", \"" +
        std::string(c.type) + "\") called with an unknown type";
    EXPECT_EQ(log.Lines(), c.isError ? std::vector{line} : std::vector<std::string>());
  }
}

}  // namespace
}  // namespace Kest::Testing
