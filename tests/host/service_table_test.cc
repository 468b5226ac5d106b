#include "host/session/service_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <future>
#include <set>
#include <thread>

#include "base/mutex.h"
#include "host/cause/cause.h"
#include "plugin/text_view.h"

namespace Kest::Host {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::string_view kEnabled =
    "OnJsonApiEvent_/tav-platform-config/v1/namespaces/LootConfig/Enabled";
const KestRequest kRequest = {ToText("GET"), ToText("/no-such/v1/thing"), nullptr, 0, {}, {}, {}};

// Plays the plugin: calls the table and notes what is delivered.
class ServiceTableTest : public testing::Test {
 protected:
  void SetUp() override {
    auto world = World::Load(World::SampleText(), "sample.json", 1);
    ASSERT_TRUE(world) << world.GetFailure().text;
    world_ = std::move(world.GetValue());
    services_ = std::make_unique<ServiceTable>(ServiceTable::Wiring{
        &scheduler_, &serviceEvents_, &stream_, &log_, &traffic_, world_.get()});
    table_ = services_->Table();
  }
  void TearDown() override {
    serviceEvents_.Pause();
    scheduler_.End();
    std::fclose(logFile_);
  }

  // Runs `work` as a task and waits until everything it caused is over.
  void OnTask(const Scheduler::Work& work) {
    std::promise<bool> quiet;
    scheduler_.Post({.name = "test", .work = [&] {
                       work();
                       quiet.set_value(scheduler_.WaitUntilQuiet(
                           milliseconds(10'000), [this] { return serviceEvents_.Quiet(); }));
                     }});
    EXPECT_TRUE(quiet.get_future().get());
  }
  void SetEnabled(std::string_view json) {
    EXPECT_EQ(world_->Control("PUT", "/configuration/Enabled", json).status, 200);
    services_->DispatchWorldEvents(/*isControl=*/true);
  }
  bool Subscribe(std::string_view name) {
    return table_->subscribe(table_, ToText(name), Deliver, this);
  }

  static void Deliver(void* context, KestText, KestText contentType, KestBytes body) {
    auto* self = static_cast<ServiceTableTest*>(context);
    EXPECT_EQ(ToView(contentType), "application/json");
    self->onScheduler_ = self->scheduler_.OnTask();
    const std::string payload(ToView(body));
    if (self->yieldInDelivery_) self->table_->yield(self->table_);
    self->Add(payload);
  }
  static void Complete(void* context, const KestResponse* response) {
    auto* self = static_cast<ServiceTableTest*>(context);
    self->Add(std::to_string(response->status) + " " + std::string(ToView(response->message)));
  }
  // Others run before it publishes.
  static void PublishAfterYield(void* context) {
    auto* self = static_cast<ServiceTableTest*>(context);
    while (self->Count() < 4) self->table_->yield(self->table_);
    self->table_->publish(self->table_, ToText("/x"), KEST_EVENT_UPDATE, ToBytes("1"));
  }
  static void Note(void* context) { static_cast<ServiceTableTest*>(context)->Add("task"); }

  // Tasks and the thread of the service events deliver.
  void Add(std::string delivered) {
    const MutexLock lock(mutex_);
    delivered_.push_back(std::move(delivered));
  }
  size_t Count() {
    const MutexLock lock(mutex_);
    return delivered_.size();
  }

  std::FILE* const logFile_ = std::tmpfile();
  HostLog log_{logFile_, LogLevel::kOkay};
  EventStream stream_;
  Timeline timeline_{[] { return int64_t{0}; }};
  Ledger ledger_;
  Traffic traffic_{&timeline_, &ledger_};
  std::unique_ptr<World> world_;
  Scheduler scheduler_{[](std::string_view, std::string_view text) { ADD_FAILURE() << text; }};
  ServiceEventThread serviceEvents_{
      [this](const ServiceEventThread::Event& event) { services_->DeliverServiceEvent(event); }};
  std::unique_ptr<ServiceTable> services_;
  const KestHostServices* table_ = nullptr;
  Mutex mutex_;
  std::vector<std::string> delivered_;
  bool yieldInDelivery_ = false;
  bool onScheduler_ = false;
};

TEST_F(ServiceTableTest, AnExistingResourceIsDeliveredAsCreateThenItsChangesInOrder) {
  yieldInDelivery_ = true;  // a later change must not overtake one that waits
  OnTask([&] {
    ASSERT_TRUE(Subscribe(kEnabled));
    EXPECT_THAT(delivered_, ElementsAre());  // never from inside the call
    SetEnabled("false");
    SetEnabled("true");
  });
  ASSERT_EQ(delivered_.size(), 3u);
  EXPECT_THAT(delivered_[0], HasSubstr(R"("eventType":"Create")"));
  EXPECT_THAT(delivered_[1], HasSubstr(R"("data":false)"));
  EXPECT_THAT(delivered_[2], HasSubstr(R"("data":true)"));
  EXPECT_TRUE(onScheduler_);
  delivered_.clear();
  OnTask([&] {
    ASSERT_TRUE(Subscribe("OnJsonApiEvent"));  // follows every change, but not what exists
    table_->unsubscribe(table_, ToText(kEnabled));
    SetEnabled("false");
  });
  EXPECT_THAT(delivered_, ElementsAre(HasSubstr("LootConfig/Enabled")));
}

TEST_F(ServiceTableTest, TheNewestLinesOfThePluginAreKept) {
  table_->log(table_, 2, ToText("first\n"));
  for (size_t i = 1; i < HostLog::kMostKept; ++i) table_->log(table_, 77, ToText("more"));
  EXPECT_EQ(log_.Kept().front(), "first");
  table_->log(table_, 3, ToText("newest"));
  EXPECT_EQ(log_.Kept().size(), HostLog::kMostKept);
  EXPECT_EQ(log_.Kept().front(), "more");
  EXPECT_EQ(log_.Kept().back(), "newest");
  EXPECT_EQ(std::ftell(logFile_), 0) << "a plugin that prints its lines itself";
}

TEST_F(ServiceTableTest, NothingIsCalledForADroppedSubscriptionAndAfterClose) {
  OnTask([&] {
    ASSERT_TRUE(Subscribe(kEnabled));
    table_->unsubscribe(table_, ToText(kEnabled));
    SetEnabled("false");
    table_->unsubscribe(table_, ToText("OnJsonApiEvent_/unknown"));
  });
  EXPECT_THAT(delivered_, ElementsAre());
  OnTask([&] {
    ASSERT_TRUE(Subscribe(kEnabled));
    ASSERT_TRUE(table_->request(table_, &kRequest, Complete, this));
    table_->postTask(table_, ToText("a"), Note, this);
    services_->Close();
    SetEnabled("true");
  });
  EXPECT_THAT(delivered_, ElementsAre());
}

TEST_F(ServiceTableTest, KnowsItsEventNames) {
  OnTask([&] {
    for (const char* name :
         {"OnJsonApiEvent", "OnJsonApiEvent_/x", "OnSvdsEvent_a.b", "OnServiceProxyAsyncEvent"}) {
      EXPECT_TRUE(Subscribe(name)) << name;
    }
    for (const char* name : {"OnJsonApiEvents", "OnServiceProxyUuidEvent_x", "", "OnJsonApiEvent_"})
      EXPECT_FALSE(Subscribe(name)) << name;
    EXPECT_FALSE(table_->subscribe(table_, ToText("OnJsonApiEvent"), nullptr, this));
  });
}

TEST_F(ServiceTableTest, AServiceEventComesOnAnotherThread) {
  onScheduler_ = true;
  OnTask([&] {
    ASSERT_TRUE(Subscribe("OnSvdsEvent_some.topic"));
    const WorldResponse pushed = world_->Control(
        "POST", "/messages", R"({"subtopic":"some.topic","typeName":"t","body":{"a":1}})");
    ASSERT_EQ(pushed.status, 200) << pushed.message;
    services_->DispatchWorldEvents(/*isControl=*/true);
  });
  EXPECT_THAT(delivered_, ElementsAre(HasSubstr(R"("typeName":"t")")));
  EXPECT_FALSE(onScheduler_);
}

TEST_F(ServiceTableTest, ARequestIsCompletedLaterWhateverItsStatus) {
  OnTask([&] {
    std::string url = "/no-such-plugin/v1/thing";
    KestRequest request = kRequest;
    request.url = ToText(url);
    ASSERT_TRUE(table_->request(table_, &request, Complete, this));
    url.assign(url.size(), '?');  // the host has its own copy
    EXPECT_THAT(delivered_, ElementsAre());
    EXPECT_FALSE(table_->request(table_, nullptr, Complete, this));
    EXPECT_FALSE(table_->request(table_, &request, nullptr, this));
  });
  EXPECT_THAT(delivered_, ElementsAre(HasSubstr("404 there is no resource /no-such-plugin")));
}

TEST_F(ServiceTableTest, NamedTasksMergeAndNamelessOnesDoNot) {
  OnTask([&] {
    std::string posted;
    for (const char* name : {"a", "a", "b", "", ""}) {
      posted += std::to_string(table_->postTask(table_, ToText(name), Note, this));
    }
    EXPECT_EQ(posted, "12111");  // queued 1, merged 2
    EXPECT_EQ(table_->postTask(table_, ToText("c"), nullptr, this), KEST_TASK_REFUSED);
  });
  EXPECT_THAT(delivered_, ElementsAre("task", "task", "task", "task"));
}

TEST_F(ServiceTableTest, EachRowOfTheTimelineHasItsCause) {
  const std::string call =
      R"({"serviceName":"loot","methodName":"redeemPlayerLoot","args":["r","{\"lootName\":\"EMOTE_0\"}"]})";
  OnTask([&] {
    world_->Control("POST", "/login", "{}");
    ASSERT_TRUE(Subscribe("OnServiceProxyUuidEvent"));
    const CauseScope scope(timeline_.Add({.kind = RowKind::kRequest, .name = "redeem"}));
    KestRequest request = kRequest;
    request.method = ToText("POST");
    request.url = ToText("/tav-login/v1/service-proxy-uuid-requests");
    request.body = ToBytes(call);
    ASSERT_TRUE(table_->request(table_, &request, Complete, this));
    ASSERT_TRUE(table_->request(table_, &kRequest, Complete, this));
    table_->postTask(table_, ToText("publish"), PublishAfterYield, this);
    table_->postTask(table_, ToText("note"), Note, this);
  });
  std::string rows;
  const Json page = timeline_.Read({.limit = 1000});
  for (const Json& row : page["rows"]) {
    if (row["kind"] == "resource") continue;
    rows += row["kind"].get<std::string>() + " " + row["name"].get<std::string>() + " " +
            row.value("status", "") + " <" + timeline_.NameOf(row.value("cause", 0)) + "\n";
  }
  EXPECT_EQ(rows,
            "request redeem  <\n"
            "service-call loot.redeemPlayerLoot  <redeem\n"
            "sibling-request /no-such/v1/thing  <redeem\n"
            "sibling-response /no-such/v1/thing 404 </no-such/v1/thing\n"
            "task publish  <redeem\n"
            "task note  <redeem\n"
            "service-response loot.redeemPlayerLoot MISSING_LOOT <loot.redeemPlayerLoot\n"
            "event /x Update <publish\n");
  EXPECT_EQ(
      ledger_.RefusalOf(timeline_.NearestCause(page["last"], RowKind::kRequest)).value().details,
      "has no EMOTE_0");
}

TEST_F(ServiceTableTest, PublishesJsonOnly) {
  OnTask([&] {
    const auto publish = [&](const char* path, int32_t type, const char* json) {
      return table_->publish(table_, ToText(path), type, ToBytes(json));
    };
    EXPECT_TRUE(publish("/x", KEST_EVENT_UPDATE, "{}") && publish("/x", KEST_EVENT_DELETE, ""));
    EXPECT_FALSE(publish("/x", KEST_EVENT_DELETE, "{}")) << "a removal with a value";
    EXPECT_FALSE(publish("/x", KEST_EVENT_CREATE, "")) << "no value";
    EXPECT_FALSE(publish("/x", KEST_EVENT_UPDATE, "{\"a\":")) << "torn";
    for (const int32_t type : {-1, 3}) EXPECT_FALSE(publish("/x", type, "{}"));
    EXPECT_FALSE(publish("", KEST_EVENT_UPDATE, "{}"));
  });
  EXPECT_EQ(stream_.Held().last, 2u);
}

TEST_F(ServiceTableTest, TimeAndIdsAreThoseOfTheHostsClockAndSeed) {
  const HostClock clock({ClockMode::kFrozen, 1, 1234});
  const auto read = [&](uint64_t seed) {
    const ServiceTable services(
        {&scheduler_, &serviceEvents_, &stream_, &log_, &traffic_, world_.get(), &clock, seed});
    EXPECT_EQ(services.Table()->now(services.Table()), 1234);
    std::set<std::string> ids;
    for (int i = 0; i < 100; ++i) {
      std::array<uint8_t, 16> uuid{};
      EXPECT_TRUE(services.Table()->createUuid(services.Table(), uuid.data()));
      EXPECT_EQ(uuid[6] >> 4, 4) << "random";
      EXPECT_EQ(uuid[8] >> 6, 2);
      ids.emplace(uuid.begin(), uuid.end());
    }
    EXPECT_EQ(ids.size(), 100u);
    return ids;
  };
  EXPECT_EQ(read(1), read(1));
  EXPECT_NE(read(1), read(2));
}

TEST_F(ServiceTableTest, FaultRulesDecideHowResponsesAndEventsCome) {
  const auto set = [&](std::string_view rules) {
    const WorldResponse done =
        world_->Control("PUT", "/faults", R"({"rules":[)" + std::string(rules) + "]}");
    EXPECT_EQ(done.status, 200) << done.message;
    delivered_.clear();
  };
  const std::string_view none =
      R"({"sibling":"/no-such/*","action":"fail","status":418,"error":"no",)";
  OnTask([&] {
    set(std::string(none) + R"("delay":30},{"published":"/drop","action":"drop"},
        {"published":"/double","action":"double"},{"published":"/late","delay":30})");
    ASSERT_TRUE(table_->request(table_, &kRequest, Complete, this));
    for (const char* path : {"/drop", "/double", "/late"}) {
      EXPECT_TRUE(table_->publish(table_, ToText(path), KEST_EVENT_UPDATE, ToBytes("1")));
    }
    EXPECT_EQ(stream_.Held().last, 2u);
  });
  EXPECT_EQ(stream_.Held().last, 3u);
  EXPECT_THAT(delivered_, ElementsAre("418 no"));
  OnTask([&] {  // the present value of a followed resource
    set(R"({"sibling":"*Enabled","action":"garble","payload":7,"delay":20})");
    ASSERT_TRUE(Subscribe(kEnabled));
  });
  EXPECT_THAT(delivered_, ElementsAre(HasSubstr(R"("eventType":"Update","data":7)")));
}

TEST_F(ServiceTableTest, AResponseMayOvertakeTheRequestOrBeHeld) {
  const std::string call = R"({"serviceName":"loot","methodName":"x","args":[]})";
  const auto post = [&](const char* url) {
    const KestRequest request = {ToText("POST"), ToText(url), nullptr, 0, {}, ToBytes(call), {}};
    EXPECT_TRUE(table_->request(table_, &request, Complete, this));
  };
  OnTask([&] {
    world_->Control("PUT", "/faults", R"({"rules":[{"service":"*","action":"early"}]})");
    ASSERT_TRUE(Subscribe("OnServiceProxyUuidEvent"));
    post("/tav-login/v1/service-proxy-uuid-requests");
  });
  EXPECT_THAT(delivered_, ElementsAre(HasSubstr("no player is signed in"), "200 "));
  delivered_.clear();
  OnTask([&] {
    world_->Control("PUT", "/faults", R"({"rules":[{"service":"*","action":"hold"}]})");
    for (int i = 0; i < 2; ++i) post("/tav-login/v1/session/invoke");
  });
  EXPECT_THAT(delivered_, ElementsAre());
  OnTask([&] {
    world_->Control("POST", "/held/2", R"({"action":"fail","error":"lost"})");
    services_->DispatchWorldEvents(/*isControl=*/true);
  });
  EXPECT_THAT(delivered_, ElementsAre("500 lost"));
  OnTask([&] {
    services_->Close();
    world_->Control("POST", "/held/1", R"({"action":"release"})");
    services_->DispatchWorldEvents(/*isControl=*/true);
  });
  EXPECT_THAT(delivered_, ElementsAre("500 lost")) << "no one is there any more";
}

TEST_F(ServiceTableTest, EntriesOfModuleTasksAreRefusedElsewhere) {
  EXPECT_FALSE(table_->request(table_, &kRequest, Complete, this));
  EXPECT_FALSE(Subscribe(kEnabled));
  EXPECT_FALSE(table_->publish(table_, ToText("/x"), KEST_EVENT_UPDATE, ToBytes("1")));
  table_->waitBegin(table_, ToText("x"));
  table_->waitEnd(table_);
  table_->yield(table_);
  EXPECT_EQ(table_->postTask(table_, ToText("a"), Note, this), KEST_TASK_QUEUED);  // any thread
  OnTask([] {});
  EXPECT_THAT(delivered_, ElementsAre("task"));
}

}  // namespace
}  // namespace Kest::Host
