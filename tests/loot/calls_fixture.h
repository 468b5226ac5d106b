// The calls to siblings and services on a fake host, without a plugin around them.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "binding/convert/define_struct.h"
#include "client/service_proxy.h"
#include "client/sibling_client.h"
#include "plugin/app_module.h"
#include "plugin/host_services.h"
#include "plugin/plugin_events.h"
#include "tests/support/fake_host.h"
#include "tests/support/log_capture.h"

namespace Kest::Client::Loot {

using Testing::FakeHost;
using Testing::FakeResponse;
using Testing::ServiceReply;

struct TestRecord {
  std::string name;
  double number = 0;
};
struct UnregisteredRecord {};

class CallsTest : public ::testing::Test {
 protected:
  CallsTest() {
    RegisterPluginEvents(TypeRegistry::Process());
    DefineStruct<TestRecord>(TypeRegistry::Process(), "TestRecord", "Kest::Client::Loot")
        .Fields<&TestRecord::name, &TestRecord::number>();
    services_.Attach(host_.Services());
  }
  ~CallsTest() override { EndPlugin(); }

  // What stop does around the calls.
  void EndPlugin() {
    gate_.Close();
    proxy_.Finalise();
    host_.RunTask([this] { services_.CancelAll(); });
  }

  std::vector<std::string> Requests() const { return host_.Printed({Testing::Action::kRequest}); }

  LogCapture log_;
  EntryGate gate_;
  RuntimeCounters counters_;
  HostServices services_{gate_, counters_};
  AppModule module_{services_};
  const std::string name_ = "vwm-be-test";
  FakeHost host_;
  SiblingClient client_{services_, module_, name_};
  ServiceProxy proxy_{services_, module_, client_, name_};
  std::vector<std::string> seen_;  // what the test's handlers noted
};

}  // namespace Kest::Client::Loot
