#include <gmock/gmock.h>

#include "tests/host/world_testing.h"

namespace Kest::Host {
namespace {

using Lines = std::vector<std::string>;

using WorldControls = WorldTest;

TEST_F(WorldControls, WrongInputIsExplainedAndChangesNothing) {
  SignIn();
  const std::pair<const char*, const char*> kCases[] = {
      {"GET /", "404 there is no control of an empty name"},
      {"GET /weather", "404 there is no control /weather"},
      {"GET /configuration/Enabled", "405 this control takes PUT, DELETE, not GET"},
      {"POST /login {",
       "400 body: parse error at line 1, column 2: syntax error while parsing object key - "
       "unexpected end of input; expected string literal"},
      {R"(POST /login {"summonerId": -1})",
       R"(400 body:1:16: "summonerId" must be an integer from 0, found -1)"},
      {R"(POST /login {"summoner": 1})", R"(400 body:1:2: unknown member "summoner")"},
      {R"(PUT /gameflow {"phase": "Asleep"})", R"(400 body:1:11: "Asleep" is no phase of a game)"},
      {"PUT /configuration/Enabled",
       "400 body: parse error at line 1, column 1: syntax error while parsing value - "
       "unexpected end of input; expected '[', '{', or a literal"},
      {"PUT /configuration/a%FFb 1",
       "400 the name of a configuration value is made of letters and digits"},
      {"DELETE /configuration/Nothing", "404 there is no configuration value Nothing"},
      {"PUT /collections/hats/1 {}", "404 there is no collection hats"},
      {"PUT /collections/champions/9 {}", "404 9 is not among the champions"},
      {"PUT /collections/champions/1x {}", "404 1x is not among the champions"},
      {R"(PUT /collections/summoner-icons/5 {"owned": true, "rented": true})",
       R"(400 body:1:17: unknown member "rented")"},
      {R"(POST /inventory {"lootName": "X", "delta": 1})",
       R"(400 body:1:1: unknown loot name "X")"},
      {R"(POST /inventory {"lootName": "CHEST_reed", "delta": -5})",
       "400 body:1:37: the count would become -1"},
      {R"(POST /inventory {"lootName": "CHEST_reed", "delta": 2147483647})",
       "400 body:1:37: the count would become 2147483651"},
      {R"(POST /messages {"name": "nothing"})",
       R"(400 body:1:10: this world has no message "nothing")"},
      {R"(POST /messages {"name": "grant", "as": "song"})",
       R"(400 body:1:25: "as" must be "object" or "text", found "song")"},
      {R"(POST /login-packet {"simpleMessages": [{"body": 1, "params": ["x"]}]})",
       R"(400 body:1:30: "body" and "params" exclude each other)"},
      {"PUT /token {}", R"(400 body:1:1: member "token" is missing)"},
      {"PUT /service/getMoon {}", "404 the platform has no service method getMoon"},
      {R"(PUT /service/getClientConfiguration {"status": "NO"})",
       "400 body:1:12: the result of getClientConfiguration has no status word"},
      {R"(PUT /service/redeemPlayerLoot {"latency": -1})",
       R"(400 body:1:13: "latency" must be between 0 and 600000, found -1)"},
  };
  const std::string before = Control("GET /world");
  for (const auto& [call, response] : kCases) {
    EXPECT_EQ(Control(call), response) << call;
    EXPECT_EQ(Events(), Lines()) << call;
  }
  EXPECT_EQ(Control("GET /world"), before);
}

TEST_F(WorldControls, OnlyAChangeIsAnnounced) {
  SignIn();
  const std::pair<const char*, const char*> kCases[] = {
      // one after the other, with the event each causes; below "/tav-"
      {"PUT /configuration/Enabled true", ""},
      {"PUT /configuration/Enabled false",
       "Update platform-config/v1/namespaces/LootConfig/Enabled"},
      {"PUT /configuration/Enabled  false ", ""},
      {"PUT /configuration/PxhEnabled \"maybe\"",
       "Create platform-config/v1/namespaces/LootConfig/PxhEnabled"},
      {"DELETE /configuration/PxhEnabled",
       "Delete platform-config/v1/namespaces/LootConfig/PxhEnabled"},
      {R"(PUT /collections/champions/1 {"owned": true})", ""},
      {R"(PUT /collections/champions/2 {"rented": true})",
       "Update champions/v1/inventories/70/champions-minimal"},
      {R"(PUT /collections/summoner-icons/5 {"owned": true})",
       "Update collections/v1/inventories/70/summoner-icons"},
      {R"(PUT /collections/emotes/7 {"freeToPlayReward": true})",
       "Update inventory/v1/inventory/emotes"},
      {R"(PUT /collections/tournament-logos/42 {"owned": true})", ""},
      {R"(PUT /gameflow {"phase": "Lobby"})", "Create gameflow/v1/session"},
      {R"(PUT /gameflow {"phase": "Lobby"})", ""},
      {"PUT /gameflow", "Delete gameflow/v1/session"},
      {R"(PUT /gameflow {"phase": null})", ""},
      {R"(PUT /summoner {"summonerLevel": 9})", ""},
      {R"(PUT /summoner {"summonerLevel": 10})", "Update summoner/v1/current-summoner"},
      {R"(POST /inventory {"lootName": "EMOTE_7", "delta": 1})", ""},
      {"POST /login", ""},
      {R"(POST /login-packet {"simpleMessages": []})", "Update login/v1/login-data-packet"},
  };
  for (const auto& [call, event] : kCases) {
    EXPECT_THAT(Control(call), testing::StartsWith("{")) << call;
    Lines expected;
    if (*event != '\0') expected.push_back(std::string(event).insert(7, "/tav-"));
    EXPECT_EQ(Events(), expected) << call;
  }
  EXPECT_EQ(*world_->Resource("/tav-inventory/v1/inventory/emotes"),
            R"([{"itemId":7,"ownershipType":"F2P"}])");
  EXPECT_EQ(Inventory().at("EMOTE_7"), 1);
}

TEST_F(WorldControls, ASessionComesAndGoesWithItsResources) {
  EXPECT_EQ(Events(), Lines()) << "a world starts without news";
  EXPECT_EQ(world_->Resource("/tav-login/v1/session"), std::nullopt);
  EXPECT_EQ(Control("POST /login"), R"({"summonerId":70,"accountId":80})");
  const Lines in = Events();
  ASSERT_EQ(in.size(), 9u);
  EXPECT_EQ(in.front(), "Create /tav-login/v1/session");
  EXPECT_EQ(in.back(), "Update /tav-login/v1/session") << "everything else is there before";
  EXPECT_EQ(*world_->Resource("/tav-login/v1/session"),
            R"({"state":"SUCCEEDED","summonerId":70,"accountId":80})");

  // Another account: the session is never deleted in between.
  EXPECT_EQ(Control(R"(POST /login {"summonerId": 71, "accountId": 0})"),
            R"({"summonerId":71,"accountId":0})");
  for (const std::string& line : Events()) EXPECT_NE(line, "Delete /tav-login/v1/session");
  EXPECT_EQ(world_->Request("GET", "/tav-champions/v1/inventories/70/skins-minimal", "", "").status,
            404);
  EXPECT_EQ(world_->Request("GET", "/tav-champions/v1/inventories/71/skins-minimal", "", "").status,
            200);

  EXPECT_EQ(Control("POST /logout"), R"({"wasSignedIn":true})");
  const Lines out = Events();
  EXPECT_EQ(out.front(), "Update /tav-login/v1/session");
  EXPECT_EQ(out.back(), "Delete /tav-login/v1/session");
  EXPECT_EQ(Control("POST /logout"), R"({"wasSignedIn":false})");
  EXPECT_EQ(Events(), Lines());
}

TEST_F(WorldControls, AMessageIsPushedAsObjectOrAsText) {
  const std::string name =
      "OnSvdsEvent_com.kestgames.platform.messaging.persistence.SimpleDialogMessage";
  Control(R"(POST /messages {"name": "grant"})");
  Control(R"(POST /messages {"name": "grant", "as": "text"})");
  Control(R"(POST /messages {"subtopic": "a.b", "typeName": "T", "clientId": "c", "body": 1})");
  const std::vector<WorldEvent> events = world_->TakeEvents();
  ASSERT_EQ(events.size(), 3u);
  EXPECT_EQ(events[0].name, name);
  EXPECT_EQ(Parse(events[0].payload)["typeName"], "championMasteryLootGrant");
  EXPECT_EQ(Part(Parse(events[0].payload), "body"), R"({"gameId":3,"lootName":"CHEST_reed"})");
  EXPECT_EQ(Parse(events[1].payload)["body"], R"({"gameId":3,"lootName":"CHEST_reed"})");
  EXPECT_EQ(events[2].payload, R"({"clientId":"c","subtopic":"a.b","typeName":"T","body":1})");
}

TEST_F(WorldControls, TheSignedInventoryHasItsTokenOrTheOneThatWasSet) {
  SignIn();
  const auto ask = [&](std::string_view query) {
    const WorldResponse response =
        world_->Request("GET", "/tav-inventory/v1/signedInventory" + std::string(query), "", "");
    return response.status == 200 ? response.body : std::to_string(response.status);
  };
  const char* kQuery = "?inventoryTypes=%5B%22TOURNAMENT_LOGO%22,%22HAT%22%5D";
  Control(R"(PUT /collections/tournament-logos/42 {"owned": true})");
  // {"alg":"none","typ":"JWT"} . {"sub":"70","items":{"TOURNAMENT_LOGO":[{"inventoryType":
  // "TOURNAMENT_LOGO","payload":{"rewardSpec":{"name":"42"}}}]}} . unsigned sample
  const std::string token =
      "eyJhbGciOiJub25lIiwidHlwIjoiSldUIn0=."
      "eyJzdWIiOiI3MCIsIml0ZW1zIjp7IlRPVVJOQU1FTlRfTE9HTyI6W3si"
      "aW52ZW50b3J5VHlwZSI6IlRPVVJOQU1FTlRfTE9HTyIsInBheWxvYWQiOnsicmV3YXJkU3BlYyI6eyJuYW1lIjoiNDIi"
      "fX19XX19.dW5zaWduZWQgc2FtcGxl";
  EXPECT_EQ(ask(kQuery), "{\"TOURNAMENT_LOGO\":\"" + token + "\"}");
  Control(R"(PUT /token {"token": "a..b"})");
  EXPECT_EQ(ask(kQuery), R"({"TOURNAMENT_LOGO":"a..b"})");
  Control(R"(PUT /token {"token": null})");
  EXPECT_EQ(ask(kQuery), "{}");
  Control("DELETE /token");
  EXPECT_EQ(ask("?a=b&inventoryTypes=[\"HAT\"]"), "{}");
  EXPECT_EQ(ask("") + ask("?inventoryTypes=[1]") + ask("?inventoryTypes=%5"), "400400400");
}

}  // namespace
}  // namespace Kest::Host
