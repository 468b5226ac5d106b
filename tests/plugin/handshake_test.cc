#include "plugin/handshake.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "binding/types/type_registry.h"
#include "plugin/text_view.h"
#include "tests/plugin/scripted_plugin.h"
#include "tests/support/golden.h"
#include "tests/support/log_capture.h"

namespace Kest::Testing {
namespace {

using ::testing::AllOf;
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
  std::string text;
  ScriptedPlugin::script.registerApi = [&](ScriptedPlugin&) {
    for (const TypeRecord* type : TypeRegistry::Process().Types()) {
      text.append("type ").append(type->name);
      for (const std::string_view tag : type->tags) text.append(" #").append(tag);
      text += "\n";
    }
    EXPECT_THAT(log.Lines(), IsEmpty());
  };
  const KestHandshakeBlock block = Greet({18, 0, 0});
  EXPECT_THAT(log.Lines(), ElementsAre("ALWAYS|| vwm-be-test api registered"));
  for (size_t i = 0; i < block.api->eventNameCount; ++i) {
    const EventRecord* event = TypeRegistry::Process().FindEvent(ToView(block.api->eventNames[i]));
    ASSERT_NE(event, nullptr);
    text += "event " + event->name + ": " + event->description + " " +
            std::string(TypeName(event->payload)) + "\n";
  }
  EXPECT_EQ(block.api->size, sizeof(KestApiDescriptor));
  EXPECT_EQ(block.api->endpointSize, sizeof(KestEndpoint));
  EXPECT_EQ(block.api->argumentSize, sizeof(KestArgument));
  for (size_t i = 0; i < block.api->endpointCount; ++i) {
    const KestEndpoint& endpoint = *KestEndpointAt(block.api, i);
    text += "endpoint " + std::to_string(endpoint.methodId);
    for (const KestText& part : {endpoint.pathTemplate, endpoint.functionName, endpoint.result.name,
                                 endpoint.result.element}) {
      text.append(" ").append(ToView(part));
    }
    for (size_t j = 0; j < endpoint.argumentCount; ++j) {
      const KestArgument& argument = *KestArgumentAt(block.api, &endpoint, j);
      text.append(", ")
          .append(ToView(argument.name))
          .append(" ")
          .append(ToView(argument.type.name));
      text += " at " + std::to_string(argument.location) + (argument.optional ? " optional" : "");
      text.append(" \"").append(ToView(argument.description)).append("\"");
    }
    text += "\n";
  }
  EXPECT_TRUE(GoldenText("tests/plugin/described.txt", text));
  block.callbacks->stop(block.context);
}

TEST(PluginNames, ThePrefixFollowsTheExactType) {
  EXPECT_TRUE(GoldenCases("tests/plugin/names.txt", [](const std::string& type) {
    LogCapture log;
    std::string outcome = MakePluginNames("x", type).fullName;
    for (const std::string& line : log.Lines()) outcome += ", " + line;
    return outcome;
  }));
}

}  // namespace
}  // namespace Kest::Testing
