#include "tests/host/world_testing.h"

namespace Kest::Host {
namespace {

class WorldService : public WorldTest {
 protected:
  void SetUp() override {
    WorldTest::SetUp();
    SignIn();
  }
  WorldResponse Post(std::string_view endpoint, std::string_view body) {
    return world_->Request("POST", "/tav-login/v1/" + std::string(endpoint), "application/json",
                           body);
  }
};

TEST_F(WorldService, LeavesOutDefinitionsThatTheCallerHolds) {
  const std::pair<const char*, const char*> kCases[] = {// versions held, sizes sent
                                                        {"[0,0,0]", "[13,4,2]"},
                                                        {"[11,12,13]", "[0,0,0]"},
                                                        {"[11,0,13]", "[0,4,0]"},
                                                        {"[12,12,12]", "[13,0,2]"}};
  for (const auto& [held, sizes] : kCases) {
    Json sent = Parse(Invoke("getAllPlayerLootAndAllDefinitions", Parse(held)).body);
    EXPECT_EQ(
        WriteJson({sent["lootItemList"]["lootItems"].size(), sent["recipeList"]["recipes"].size(),
                   sent["queryResult"]["queryToLootNames"].size()}),
        sizes)
        << held;
    EXPECT_EQ(sent["lootItemList"]["lastUpdate"], 11);
    EXPECT_EQ(sent["queryResult"]["lastUpdate"], 13);
    EXPECT_EQ(sent["playerLoot"].size(), 11u);
  }
}

TEST_F(WorldService, RedeemGivesTheThingAndTakesTheItem) {
  const struct {
    const char *why, *lootName, *status;
    const char* changed;  // collections, in the order of their events
  } kCases[] = {
      // one after the other
      {"a skin of an owned champion, so champions change too", "SKIN_1001", "OK",
       "skins champions "},
      {"the second of it", "SKIN_1001", "ALREADY_OWNED", ""},
      {"a skin of an unowned champion", "SKIN_2001", "CHAMPION_NOT_OWNED", ""},
      {"a rental of an owned champion", "CHAMPION_RENTAL_1", "ALREADY_OWNED", ""},
      {"a rental", "CHAMPION_RENTAL_2", "OK", "champions "},
      {"the second of it", "CHAMPION_RENTAL_2", "ALREADY_RENTED", ""},
      {"a champion that is rented", "CHAMPION_2", "OK", "champions "},
      {"now its skin", "SKIN_2001", "OK", "skins champions "},
      {"used up", "SKIN_2001", "MISSING_LOOT", ""},
      {"not on sale", "EMOTE_none", "NOT_REDEEMABLE", ""},
      {"a boost changes no collection", "BOOST_wind", "OK", ""},
      {"a material", "MATERIAL_key", "NOT_REDEEMABLE", ""},
      {"held only with a reference id", "CHAMPION_TOKEN_star", "MISSING_LOOT", ""},
      {"no name", "", "INVALID_REQUEST", ""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(std::string(c.why) + ": " + c.lootName);
    auto expected = Inventory();
    Json result = Transact("redeemPlayerLoot", WriteJson(Json{{"lootName", c.lootName}}));
    EXPECT_EQ(result["status"], c.status) << result;
    const bool isGood = result["status"] == "OK";
    if (isGood && --expected[c.lootName] == 0) expected.erase(c.lootName);
    EXPECT_EQ(Inventory(), expected);
    EXPECT_EQ(Counts(result["removed"]).size(), isGood ? 1u : 0u);
    EXPECT_EQ(Part(result, "redeemed"), isGood ? "[" + JsonString(c.lootName) + "]" : "[]");
    std::vector<std::string> events;
    std::istringstream changed(c.changed);
    for (std::string name; changed >> name;) {
      events.push_back("Update /tav-champions/v1/inventories/70/" + name + "-minimal");
    }
    EXPECT_EQ(Events(), events);
  }
}

TEST_F(WorldService, TheNewPlayerChestIsGrantedOnce) {
  const auto grant = [&] {
    return Parse(Invoke("checkAndGrantNewPlayerChest", Json::array()).body);
  };
  EXPECT_EQ(Counts(grant()["added"]), (CountsById{{"CHEST_reed", 1}}));
  EXPECT_EQ(grant()["status"], "ALREADY_GRANTED");
  EXPECT_EQ(Inventory().at("CHEST_reed"), 5);
}

TEST_F(WorldService, RespondsByEventsAfterTheLatency) {
  const char* kRedeem =
      R"({"serviceName": "loot", "methodName": "redeemPlayerLoot", "requestKey": "k",
      "flag": false, "args": ["id", "{\"lootName\": \"SKIN_1001\"}"]})";
  const WorldResponse first = Post("service-proxy-uuid-requests", kRedeem);
  const std::vector<WorldEvent> events = world_->TakeEvents();
  ASSERT_EQ(events.size(), 3u) << "two collections, then the response";
  Json response = Parse(events[2].payload);
  EXPECT_EQ(events[2].name, "OnServiceProxyUuidEvent");
  EXPECT_EQ(events[2].channel, WorldEvent::Channel::kService);
  EXPECT_EQ(events[2].delayMilliseconds, 30);
  EXPECT_EQ(Part(response, "uuid"), first.body);
  EXPECT_EQ(Parse(response["payload"].get<std::string>())["redeemed"][0], "SKIN_1001");
  for (const char* member : {"uuid", "payload"}) response.erase(member);
  EXPECT_EQ(WriteJson(response),
            R"({"serviceName":"loot","methodName":"redeemPlayerLoot","status":"OK","error":""})");

  EXPECT_EQ(Post("service-proxy-method-requests", kRedeem).status, 204);
  const WorldEvent second = world_->TakeEvents().front();
  EXPECT_EQ(second.name, "OnServiceProxyMethodEvent");
  EXPECT_EQ(Part(Parse(second.payload), "uuid"), "\"k\"");
  EXPECT_NE(Post("service-proxy-uuid-requests", kRedeem).body, first.body);
  EXPECT_EQ(Part(Parse(Control("GET /world")), "serviceCalls"), "{\"loot.redeemPlayerLoot\":3}");
}

TEST_F(WorldService, SaysWhatIsWrongWithACall) {
  const std::pair<const char*, const char*> kCases[] = {
      {"{",
       "400 body: parse error at line 1, column 2: syntax error while parsing object key - "
       "unexpected end of input; expected string literal"},
      {"[]", "400 body:1:1: must be an object, found a list"},
      {R"({"serviceName": "loot"})", "400 body:1:1: member \"methodName\" is missing"},
      {R"({"serviceName": "loot", "methodName": "x", "args": 1})",
       "400 body:1:52: \"args\" must be a list, found 1"},
      {R"({"serviceName": "shop", "methodName": "x"})", "404 there is no service shop"},
      {R"({"serviceName": "loot", "methodName": "x"})", "404 service loot has no method x"},
      {R"({"serviceName": "loot", "methodName": "redeemPlayerLoot", "args": ["a"]})",
       "400 expected two strings: the request id and the transaction as JSON"},
      {R"({"serviceName": "loot", "methodName": "getAllPlayerLootAndAllDefinitions", "args": [1, 2, "3"]})",
       "400 expected three integers: the versions held"},
      {R"({"serviceName": "clientFacadeService", "methodName": "callPersistenceMessaging", "args": [{"msgId": "m1", "command": "eat"}]})",
       "400 unknown command eat"},
      {R"({"serviceName": "clientFacadeService", "methodName": "callPersistenceMessaging", "args": [{"msgId": 1}]})",
       "400 body:1:101: \"msgId\" must be a string, found 1"},
  };
  for (const auto& [body, expected] : kCases) {
    const WorldResponse response = Post("session/invoke", body);
    EXPECT_EQ(std::to_string(response.status) + " " + response.message, expected) << body;
  }
  Post("service-proxy-uuid-requests", kCases[5].first);
  Json response = Parse(world_->TakeEvents().front().payload);
  EXPECT_EQ(response["error"], "service loot has no method x");
  EXPECT_EQ(response["status"], "ERROR");
  Control("POST /logout");
  EXPECT_EQ(Invoke("getClientConfiguration", Json::array()).message, "no player is signed in");
}

TEST_F(WorldService, AnAcknowledgedMessageIsMissingFromTheNextPacketOnly) {
  const Json acknowledgement = {{"accountId", 80}, {"msgId", "m1"}, {"command", "ack"}};
  EXPECT_EQ(
      Invoke("callPersistenceMessaging", Json::array({acknowledgement}), "clientFacadeService")
          .body,
      "null");
  EXPECT_EQ(Part(Parse(Control("GET /world")), "acknowledgements"),
            R"([{"accountId":80,"msgId":"m1","command":"ack"}])");
  EXPECT_EQ(Events(), std::vector<std::string>());
  Control("POST /logout");
  Control("POST /login");
  EXPECT_EQ(Part(Parse(*world_->Resource("/tav-login/v1/login-data-packet")), "simpleMessages"),
            R"([{"accountId":80,"msgId":"m2","type":"news","params":["hello"]}])");
}

TEST_F(WorldService, AControlMakesTheNextCallsSlowOrFail) {
  const auto call = [&] {
    Post("service-proxy-uuid-requests", R"({"serviceName": "loot", "methodName": "redeemPlayerLoot",
        "args": ["id", "{\"lootName\": \"BOOST_wind\"}"]})");
    return world_->TakeEvents().back();
  };
  Control(R"(PUT /service/redeemPlayerLoot {"error": "down", "latency": 5, "times": 2})");
  for (int i = 0; i < 2; ++i) {
    const WorldEvent event = call();
    EXPECT_EQ(event.delayMilliseconds, 5);
    EXPECT_EQ(Parse(event.payload)["error"], "down");
  }
  Control(R"(PUT /service/redeemPlayerLoot {"status": "TOO_FREQUENT"})");
  const auto payload = Parse(call().payload)["payload"].get<std::string>();
  EXPECT_EQ(Parse(payload)["status"], "TOO_FREQUENT");
  EXPECT_TRUE(Inventory().contains("BOOST_wind")) << "nothing was done so far";

  Control(R"(PUT /service/redeemPlayerLoot {"error": "down"})");
  Control("DELETE /service/redeemPlayerLoot");
  const WorldEvent event = call();
  EXPECT_EQ(event.delayMilliseconds, 30);
  EXPECT_FALSE(Inventory().contains("BOOST_wind"));
}

}  // namespace
}  // namespace Kest::Host
