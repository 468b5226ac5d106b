#include "plugin/handshake.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "binding/types/type_registry.h"
#include "plugin/text_view.h"
#include "tests/plugin/scripted_plugin.h"
#include "tests/support/log_capture.h"

namespace Kest::Testing {
namespace {

using ::testing::AllOf;
using ::testing::AnyOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class HandshakeTest : public ::testing::Test {
 protected:
  HandshakeTest() { ScriptedPlugin::script = PluginScript(); }
  static KestHandshakeBlock Greet(const ApiVersion& host) {
    KestHandshakeBlock block{host.major, host.minor, host.patch, nullptr,
                             nullptr,    nullptr,    nullptr};
    ScriptedPlugin::Handshake(&block);
    EXPECT_EQ((ApiVersion{block.major, block.minor, block.patch}), kPluginApiVersion);
    return block;
  }
};

TEST_F(HandshakeTest, AcceptsEveryHostOfItsMajorThatIsNotOlder) {
  for (const ApiVersion& host : {ApiVersion{18, 0, 0}, {18, 0, 7}, {18, 0xffffffff, 0}}) {
    const KestHandshakeBlock block = Greet(host);
    ASSERT_NE(block.context, nullptr) << VersionText(host);
    EXPECT_STREQ(block.fullName, "vwm-be-test");
    block.callbacks->stop(block.context);
  }
  for (const ApiVersion& host : {ApiVersion{17, 9, 9}, {19, 0, 0}}) {
    EXPECT_DEATH(
        Greet(host),
        AllOf(HasSubstr("vwm-be-test which supports plugin API 18.0.0 is not compatible with "
                        "core's plugin API " +
                        VersionText(host)),
              HasSubstr("Assertion failed!"), HasSubstr("\nExpression: ALE-EECF0606")));
  }
}

TEST_F(HandshakeTest, WithoutAPluginObjectOnlyTheVersionAndTheCallbacksAreHandedOut) {
  for (const bool hasMemory : {false, true}) {
    ScriptedPlugin::script.hasMemory = hasMemory;
    ScriptedPlugin::script.registerApi = [](ScriptedPlugin&) { throw std::bad_alloc(); };
    LogCapture log;
    const KestHandshakeBlock block = Greet({18, 2, 1});
    EXPECT_EQ(block.context, nullptr);
    EXPECT_EQ(block.fullName, nullptr);
    EXPECT_EQ(block.api, nullptr);
    EXPECT_EQ(ScriptedPlugin::script.alive, 0);
    EXPECT_EQ(log.Lines(), hasMemory ? std::vector<std::string>{" ERROR|| Handshake: Out of memory"}
                                     : std::vector<std::string>());
    FakeHost host;
    KestStatistics statistics{};
    EXPECT_FALSE(block.callbacks->start(nullptr, host.Services()));
    block.callbacks->statistics(nullptr, &statistics);
    block.callbacks->stop(nullptr);
  }
  Kest::Handshake(nullptr, "test", nullptr);
}

TEST_F(HandshakeTest, RegistersTheBuiltInsThenThePluginsOwnAndDescribesAll) {
  TypeRegistry::ResetProcessForTests();
  LogCapture log;
  std::vector<std::string> typesBefore;
  ScriptedPlugin::script.registerApi = [&](ScriptedPlugin&) {
    for (const TypeRecord* type : TypeRegistry::Process().Types())
      typesBefore.push_back(type->name);
    EXPECT_THAT(log.Lines(), IsEmpty());
  };
  const KestHandshakeBlock block = Greet({18, 0, 0});
  EXPECT_THAT(
      typesBefore,
      ElementsAre("BindingHelpFormat", "BindingFullTypeIdentifier", "BindingFullArgumentHelp",
                  "BindingFullFunctionHelp", "BindingFullEnumValueHelp", "BindingFullFieldHelp",
                  "BindingFullTypeHelp", "BindingFullEventHelp", "BindingFullApiHelp",
                  "BindingAsyncState", "BindingGenericEvent", "BindingCallbackEvent",
                  "BindingGenericAsyncEvent", "BindingAsyncFailureEvent", "BindingAsyncCancelEvent",
                  "PluginManagerState", "PluginManagerResource", "PluginResourceEventType",
                  "PluginResourceEvent", "PluginSvdsEvent", "PluginSvdsResponse",
                  "PluginServiceProxyResponse"));
  for (const TypeRecord* type : TypeRegistry::Process().Types()) {
    EXPECT_THAT(type->tags, ElementsAre("$builtin", AnyOf("help", "async", "plugin")));
  }
  EXPECT_THAT(log.Lines(), ElementsAre("ALWAYS|| vwm-be-test api registered"));
  const EventRecord* event = TypeRegistry::Process().FindEvent("OnServiceProxyAsyncEvent");
  ASSERT_NE(event, nullptr);
  EXPECT_EQ(event->description, "Fired when an async service proxy message is received.");
  EXPECT_EQ(event->payload.record,
            TypeRegistry::Process().FindByName("PluginServiceProxyResponse"));

  std::vector<std::string_view> events;
  for (size_t i = 0; i < block.api->eventNameCount; ++i) {
    events.push_back(ToView(block.api->eventNames[i]));
  }
  EXPECT_THAT(events,
              ElementsAre("OnCallback", "OnJsonApiEvent", "OnSvdsEvent", "OnServiceProxyUuidEvent",
                          "OnServiceProxyMethodEvent", "OnServiceProxyAsyncEvent"));
  ASSERT_EQ(block.api->size, sizeof(KestApiDescriptor));
  ASSERT_EQ(block.api->endpointCount, 1u);
  const KestEndpoint& endpoint = block.api->endpoints[0];
  ASSERT_EQ(endpoint.argumentCount, 1u);
  const KestArgument& argument = endpoint.arguments[0];
  EXPECT_EQ(endpoint.methodId, 2);
  EXPECT_EQ(argument.location, KEST_LOCATION_PATH);
  EXPECT_FALSE(argument.optional);
  std::vector<std::string_view> texts;
  for (const KestText& text :
       {endpoint.pathTemplate, endpoint.functionName, endpoint.result.name, endpoint.result.element,
        argument.name, argument.description, argument.type.name}) {
    texts.push_back(ToView(text));
  }
  EXPECT_THAT(texts, ElementsAre("/test/v1/answer/{name}", "GetAnswer", "string", "", "name",
                                 "Any word", "string"));
  block.callbacks->stop(block.context);
}

TEST(PluginNames, ThePrefixFollowsTheExactType) {
  const std::pair<const char*, const char*> kCases[] = {{"backend", "vwm-be-x"},
                                                        {"frontend", "vwm-fe-x"},
                                                        {"backendx", "vwm-xx-x"},
                                                        {"Backend", "vwm-xx-x"},
                                                        {"", "vwm-xx-x"}};
  for (const auto& [type, fullName] : kCases) {
    SCOPED_TRACE(type);
    LogCapture log;
    EXPECT_EQ(MakePluginNames("x", type).fullName, fullName);
    std::vector<std::string> lines;
    if (fullName == std::string("vwm-xx-x")) {
      lines.push_back(
          " ERROR||             Plugin Manager| GetFullNameFromShortNameAndType(\"x\", \"" +
          std::string(type) + "\") called with an unknown type");
    }
    EXPECT_EQ(log.Lines(), lines);
  }
}

}  // namespace
}  // namespace Kest::Testing
